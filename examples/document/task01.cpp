// Tells what an offer contains.

#include "bodies.h"

int main() {
  sdp::Document offer;
  if (offer.read(kBrowserOffer)) return 1;
  for (const sdp::Section& section : offer.sections()) {
    if (!section.isReadable()) {
      std::cout << "line " << section.lineNumber() << " cannot be read\n";
      continue;
    }
    std::cout << section.index() << ": " << section.media() << ", mid " << section.mid() << ", port "
              << section.port() << ", " << textOf(section.security()) << ", " << textOf(section.direction())
              << '\n';
    for (const sdp::Format& format : section.formats()) {
      std::cout << "  " << format.format;
      if (format.encoding) std::cout << ' ' << format.encoding->name << '/' << format.encoding->clockRate;
      if (format.isCompanion) std::cout << ", serves others";
      if (format.apt) std::cout << ", repairs " << *format.apt;
      for (const std::string_view feedback : format.feedback()) std::cout << ", feedback " << feedback;
      std::cout << '\n';
    }
  }
  return 0;
}
