// Takes any bytes for a transfer form, as they are and mended so that they are one, asks the object that comes
// of it all that it answers, rewrites its o-line, and packs it again.

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <vector>

#include "objectQueries.h"

namespace {

using Bytes = std::vector<std::uint8_t>;

constexpr std::size_t textAt = sizeof(sSdpParsedData);

constexpr char body[] =
    "v=0\r\no=alice 1 9 IN IP4 192.0.2.9\r\ns=-\r\nc=IN IP4 192.0.2.1\r\nt=0 0\r\nm=audio 5004 RTP/AVP 0\r\n";

cSdpNegotiator parsedObject() {
  cSdpNegotiator object;
  require(object.sdpParse(body, SDP_TYPE_OFFER) == 0);
  return object;
}

/// What packing gives is what the object begins with; taken over again it gives the same.
void packAndUnpack(const cSdpNegotiator& object) {
  unsigned char* array = nullptr;
  unsigned int size = 0;
  require(object.compressObject(&array, size) == 0);
  const std::unique_ptr<unsigned char[]> owned(array);
  require(size > textAt && size <= sizeof object && size == object.getObjectSize() && array[size] == 0);
  require(std::memcmp(array, &object, size) == 0);
  cSdpNegotiator other = parsedObject();
  require(other.uncompressObject(array, size) == 0);
  require(std::memcmp(array, &other, size) == 0 && other.getObjectSize() == size);
}

void unpackAndAsk(const Bytes& form, bool valid) {
  const cSdpNegotiator before = parsedObject();
  cSdpNegotiator object = before;
  if (object.uncompressObject(form.data(), static_cast<unsigned int>(form.size())) != 0) {
    require(!valid && std::memcmp(&object, &before, sizeof object) == 0);
    return;
  }
  require(std::memcmp(&object, form.data(), form.size()) == 0);
  require(form.size() == sizeof object || std::memcmp(reinterpret_cast<const char*>(&object) + form.size(),
                                                      reinterpret_cast<const char*>(&before) + form.size(),
                                                      sizeof object - form.size()) == 0);
  askAll(object, body);
  askForOriginLine(object);
  requestOriginLines(object, before);
  requestOriginLines(before, object);
  packAndUnpack(object);
}

/// A form with a summary from the input's end, so that its start may be a body, or deflated text.
Bytes mended(const Bytes& input, bool asDeflated) {
  const std::size_t room = sizeof(cSdpNegotiator) - textAt;
  Bytes form(textAt);
  std::copy_n(input.rbegin(), std::min(input.size(), textAt), form.begin());
  form.insert(form.end(), input.begin(),
              input.begin() + static_cast<std::ptrdiff_t>(std::min(input.size(), room - 1)));
  form.push_back(0);
  const auto claim = static_cast<std::uint16_t>(asDeflated ? form.size() - textAt : 0);
  std::memcpy(form.data(), &claim, sizeof claim);
  return form;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const Bytes input(data, data + size);
  unpackAndAsk(input, false);
  unpackAndAsk(mended(input, false), true);
  unpackAndAsk(mended(input, true), true);
  return 0;
}
