#include "input/bodyText.h"

#include <utility>

#include "input/captureFile.h"

namespace tool {

BodyText readBodyText(const Input& input) {
  InputBytes read = readInput(input, kMaxDocumentInputSize);
  BodyText result{input.name, std::move(read.bytes), {}, std::move(read.problem)};
  if (!result.problem) result.problem = captureProblem(result.bytes);
  if (result.problem) return result;
  result.body = findSdpBody(result.bytes);
  result.problem = result.body.problem;
  return result;
}

}  // namespace tool
