#ifndef SDP_DOCUMENT_BENCH_BODIES_H
#define SDP_DOCUMENT_BENCH_BODIES_H

#include <cstddef>
#include <string>
#include <vector>

/// An offer as browsers make it: audio, video and data in one BUNDLE, with candidates.
std::string browserOffer();

/// A body of that many sections, two lines each besides the m-line.
std::string manySections(std::size_t sections);

/// A text that somebody chose for its cost, of about `size` characters.
struct Hostile {
  const char* name;
  std::string (*make)(std::size_t size);
};
const std::vector<Hostile>& hostileTexts();

#endif
