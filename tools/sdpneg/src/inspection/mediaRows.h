#ifndef SDPNEG_MEDIA_ROWS_H
#define SDPNEG_MEDIA_ROWS_H

#include <optional>
#include <string>
#include <vector>

#include "inspection/inspection.h"

namespace tool {

/// A format of an m-line with the encoding name that its rtpmap line gives.
struct MediaFormat {
  std::string format;
  std::string name;  ///< empty when there is none
};

struct MediaConnection {
  std::string type;
  std::string address;
};

/// A decoded media description as it stands, nothing inherited.
struct MediaRow {
  std::size_t number;  ///< from 1
  std::size_t line;    ///< of the input
  std::string media;
  std::string port;  ///< with a "/number of ports"
  bool active;       ///< the port is not 0
  std::string transport;
  std::string direction;  ///< empty when no attribute gives one
  std::string label;
  std::optional<MediaConnection> connection;
  std::optional<unsigned int> bandwidth;
  std::vector<MediaFormat> formats;
};

/// The media that a description holds; 25 at most.
std::vector<MediaRow> mediaRowsOf(const Inspection& inspection);

/// The media as the lines of a table, made printable; long lists of formats go on below.
std::string mediaTable(const Inspection& inspection);

}  // namespace tool

#endif
