// Decodes an SDP body, shows what the record holds, and encodes it again.
//   decode <file>     decode -  (standard input)

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <iterator>
#include <memory>
#include <optional>
#include <string>

#include "sessionDescription.h"

namespace {

std::optional<std::string> readAll(const std::string& name) {
  if (name == "-") return std::string(std::istreambuf_iterator<char>(std::cin), {});
  std::ifstream file(name, std::ios::binary);
  std::string text(std::istreambuf_iterator<char>(file), {});
  if (!file.is_open() || file.bad()) return std::nullopt;
  return text;
}

const char* orNone(const char* text) { return text != nullptr ? text : "(none)"; }

void showConnections(const c_line& line, const char* label) {
  for (int i = 0; i < sdp_CgetNoOfCs(&line); ++i) {
    std::printf("%-14s%s %s\n", label, sdp_CgetAddressType(&line, i), sdp_CgetAddress(&line, i));
  }
}

void showAttributes(const a_line& line, const char* label) {
  for (int i = 0; i < sdp_AgetNoOfAs(&line); ++i) {
    const char* value = sdp_AgetAttributeValue(&line, i);
    std::printf("%-14s%s%s%s\n", label, sdp_AgetAttributeField(&line, i), value != nullptr ? " = " : "",
                value != nullptr ? value : "");
  }
}

void showMedia(const mDescription& media) {
  std::printf("media         %s, port %s, %s\n", media.mLine.media, sdp_MgetPort(&media.mLine),
              sdp_MgetTransport(&media.mLine));
  std::printf("  formats    ");
  for (int i = 0; i < sdp_MgetNoOfFormats(&media.mLine); ++i) {
    std::printf(" %s", sdp_MgetFormat(&media.mLine, i));
  }
  std::printf("\n");
  showConnections(media.cLine, "  connection");
  if (media.bLine.count > 0) std::printf("  bandwidth   %u\n", sdp_BgetBandwidthValue(&media.bLine));
  showAttributes(media.aLine, "  attribute");
}

void show(const sDescription& body) {
  std::printf("origin        user %s, session %s, version %s, %s %s\n", orNone(sdp_OgetUserName(&body.oLine)),
              orNone(sdp_OgetSessionId(&body.oLine)), orNone(sdp_OgetSessionVersion(&body.oLine)),
              orNone(sdp_OgetAddressType(&body.oLine)), orNone(sdp_OgetAddress(&body.oLine)));
  showConnections(body.cLine, "connection");
  if (body.bLine.count > 0) std::printf("bandwidth     %u\n", sdp_BgetBandwidthValue(&body.bLine));
  showAttributes(body.aLine, "attribute");
  for (int i = 0; i < sdp_getNoOfMDs(&body) && i < SDP_MEDIA_CAPACITY; ++i) showMedia(body.media[i]);
  std::printf("media lines   %d\ncomplete      %s\n", sdp_getNoOfMDs(&body),
              sdp_isComplete(&body) ? "yes" : "no");
}

int fail(const std::string& name, const char* reason) {
  std::fprintf(stderr, "%s: %s\n", name.c_str(), reason);
  return EXIT_FAILURE;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) return fail("usage", "decode <file> (or - for standard input)");
  const std::string name = argv[1];
  const std::optional<std::string> text = readAll(name);
  if (!text) return fail(name, "cannot be read");

  const auto body = std::make_unique_for_overwrite<sDescription>();  // several hundred kilobytes
  char error[SDP_ERROR_TEXT_SIZE] = "";
  unsigned short oLineStart = 0;
  unsigned short oLineEnd = 0;
  if (sdp_decodeOpt_r(body.get(), text->c_str(), SDP_TYPE_OFFER, error, false, oLineStart, oLineEnd) != 0) {
    return fail(name, error);
  }
  show(*body);

  char* encoded = nullptr;  // grown with realloc by the encoder
  int length = 0;
  int size = 0;
  const unsigned short status = sdp_encode_r(body.get(), SDP_TYPE_OFFER, encoded, length, size);
  if (status == 0) std::printf("\nencoded, %d characters:\n\n%s", length, encoded);
  std::free(encoded);
  return status == 0 ? EXIT_SUCCESS : fail(name, "cannot be encoded: out of memory");
}
