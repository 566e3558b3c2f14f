#ifndef MODELLED_DIALOG_H
#define MODELLED_DIALOG_H

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "sdpDialog.h"

// A dialog beside a simple model of what it must hold, for random calls. Random tests and fuzz targets share it.

namespace modelledDialog {

using sdp::Dialog;
using sdp::DialogFailure;
using sdp::DialogState;
using sdp::Document;
using sdp::Party;

/// Where calls and bodies come from.
class Source {
 public:
  Source() = default;
  Source(const Source&) = delete;
  Source& operator=(const Source&) = delete;
  virtual ~Source() = default;
  /// A number below a bound.
  virtual std::uint32_t below(std::uint32_t bound) = 0;
  /// A body of the peer's own making; nothing where the usual ones will do.
  virtual std::optional<std::string> body() { return std::nullopt; }
};

/// What a codec is called in a body: "opus/48000/2".
std::string meaningOf(const sdp::Format& format);

class ModelledDialog {
 public:
  /// @param require is called with what must hold
  ModelledDialog(Source& source, void (*require)(bool holds, const char* what))
      : source_(source), require_(require) {}

  /// Makes one call, compares all with the model, and goes on with what was made to bytes and restored.
  void step();
  /// How many offers were answered.
  std::uint32_t exchanges() const { return exchanges_; }

 private:
  std::string description();
  std::string peersBody(std::uint32_t sections, bool isAnswer);
  void offer();
  void answer();
  void receiveOffer();
  void receiveAnswer();
  void hold(bool isHeld);
  void rollback();

  /// Whether the state allowed a call, and it was refused as it must be otherwise.
  bool isAllowed(DialogFailure failure, DialogState allowed, DialogFailure stable, DialogFailure local,
                 DialogFailure remote);
  void takeSent(const sdp::LocalBody& body, bool isFinished);
  void checkVersion(std::string_view text);
  void rememberSent(const std::string& text);
  void checkPlaces(const Document& offer);
  void checkNumbers(const Document& offer);
  void rememberNumbers(const Document& body);
  void compare();

  Source& source_;
  void (*require_)(bool, const char*);
  Dialog dialog_;
  DialogState state_ = DialogState::stable;
  std::optional<Party> offerer_;
  std::string local_;
  std::string remote_;
  std::string pending_;
  std::string sent_;
  std::uint32_t exchanges_ = 0;
  bool isHeld_ = false;
  bool wasHeld_ = false;  ///< while an offer is pending, what holds when it is refused
  bool isPlain_ = true;   ///< no body came that is none of the usual ones
  struct Place {
    std::string media;
    std::map<std::string, std::string, std::less<>> meanings;
  };
  std::vector<Place> places_;
};

}  // namespace modelledDialog

#endif
