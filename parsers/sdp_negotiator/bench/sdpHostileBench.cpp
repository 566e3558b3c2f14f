// What edits of texts and requests of objects cost on texts that give them the most to do: lines, and pieces of lines,
// repeated to 20 kB, in many shapes. For each operation its worst shape is printed, and
//
//   - what it takes on 20 kB of it, as a ratio to an ordinary parse: that of the analysis, without storing, of the
//     project's browser offer with ports that are no 9, whose media sections are repeated up to 20 kB;
//   - how that grew from 2 kB, divided by how the text did: 1 where time is linear. Requests are measured from 2.6 kB on,
//     where objects deflate what they store as well.
//
//   sdpHostileBench [part of an operation's name]
//
// An edit above 2 times the ordinary parse, a request above 6 times, and what grows by more than twice the text are
// marked.

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "../test/hostileTexts.h"
#include "../test/operationTable.h"
#include "hostileShapes.h"
#include "sdpNegotiatorParser.h"

namespace {

constexpr std::size_t kLong = 20000;
constexpr std::size_t kShort = 2000;
constexpr std::size_t kShortDeflated = 2600;
constexpr double kMostOfEdit = 2;
constexpr double kMostOfRequest = 6;
constexpr double kMostGrowth = 2;

/// Nanoseconds of one call, the least of some.
template <typename Prepare, typename Step>
double least(int runs, Prepare prepare, Step step) {
  using Clock = std::chrono::steady_clock;
  double best = 1e18;
  for (int run = 0; run < runs; ++run) {
    prepare();
    const auto begin = Clock::now();
    step();
    best = std::min(best, std::chrono::duration<double, std::nano>(Clock::now() - begin).count());
  }
  return best;
}

std::string ordinaryBody() {
  std::ifstream file(SDP_BENCH_BODY, std::ios::binary);
  std::string offer{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
  // The port that says nothing yet is one that the analysis refuses.
  constexpr std::string_view kNoPort = " 9 UDP";
  for (std::size_t at = offer.find(kNoPort); at != std::string::npos; at = offer.find(kNoPort)) {
    offer.replace(at, 2, " 49170");
  }
  const std::size_t media = offer.find("m=");
  const std::string pieces[] = {offer.substr(0, media), offer.substr(media)};
  std::string body = repeated(pieces, kLong);
  std::printf("ordinary body: %zu characters\n", body.size());
  return body;
}

double ordinaryParse() {
  const std::string body = ordinaryBody();
  sSdpParsedData data;
  unsigned short status = 0;
  const double taken = least(
      400, [&] { data.init(); },
      [&] { status = sdpParserMessage::sdpParse(body.c_str(), SDP_TYPE_OFFER, data); });
  if (status != 0) std::fprintf(stderr, "sdpHostileBench: the ordinary body is refused\n");
  return taken;
}

/// A text and the objects that hold it.
struct Subject {
  explicit Subject(std::string made) : text(std::move(made)), objects{parsedFrom(text), objectOf(text)} {}
  std::string text;
  cSdpNegotiator objects[2];
};

struct Measured {
  double taken = 0;
  const Shape* shape = nullptr;
  int object = 0;
  const AnyOperation* operation = nullptr;
};

std::unique_ptr<Operands> on = std::make_unique<Operands>();

double measure(const AnyOperation& operation, const Subject& subject, int object, int runs) {
  return least(
      runs, [&] { operation.prepare(*on, subject.text, subject.objects[object]); },
      [&] { operation.run(*on); });
}

/// Looks whether a text is an operation's worst so far. Few runs are enough for one that is not.
void consider(Measured& worst, const AnyOperation& operation, const Shape& shape, const Subject& subject) {
  for (int object = 0; object < 2; ++object) {
    if (operation.isRequest() && !subject.objects[object].isSdpPresent()) continue;
    double taken = measure(operation, subject, object, 2);
    if (taken > worst.taken) taken = measure(operation, subject, object, 8);
    if (taken > worst.taken) worst = {taken, &shape, object, &operation};
    if (!operation.isRequest()) return;
  }
}

void print(const Measured& worst, double ordinary) {
  const Subject whole(repeated(worst.shape->pieces, kLong));
  const AnyOperation& operation = *worst.operation;
  const Subject part(repeated(worst.shape->pieces, operation.isRequest() ? kShortDeflated : kShort));
  const double taken = measure(operation, whole, worst.object, 40);
  const double ratio = taken / ordinary;
  const double timesAsLong = static_cast<double>(whole.text.size()) / static_cast<double>(part.text.size());
  const double growth = taken / measure(operation, part, worst.object, 40) / timesAsLong;
  const bool over = ratio > (operation.isRequest() ? kMostOfRequest : kMostOfEdit);
  std::printf("%-8s%-36s%10.1f%8.2f%8.2f%s%s  %s%s\n", operation.isRequest() ? "request" : "edit",
              operation.name(), taken / 1000, ratio, growth, over ? " !ratio" : "       ",
              growth > kMostGrowth ? " !growth" : "        ", worst.shape->name.c_str(),
              operation.isRequest() && worst.object == 1 ? ", stored" : "");
  std::fflush(stdout);
}

}  // namespace

int main(int argc, char** argv) {
  const std::string wanted = argc > 1 ? argv[1] : "";
  const std::vector<Shape> shapes = hostileShapes();
  const double ordinary = ordinaryParse();
  std::printf("ordinary parse: %.1f us; %zu shapes\n%-44s%10s%8s%8s\n", ordinary / 1000, shapes.size(), "",
              "us", "ratio", "growth");
  const std::vector<AnyOperation> operations = allOperations();
  std::map<std::string, Measured> worst;
  for (const Shape& shape : shapes) {
    const Subject subject(repeated(shape.pieces, kLong));
    for (const AnyOperation& operation : operations) {
      const std::string name = operation.name();
      if (name.find(wanted) != std::string::npos) {
        consider(worst[std::string(operation.isRequest() ? "request " : "edit ") + name], operation, shape,
                 subject);
      }
    }
  }
  for (const auto& [name, each] : worst) {
    if (each.shape != nullptr) print(each, ordinary);
  }
  return 0;
}
