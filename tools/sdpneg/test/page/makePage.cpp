// Writes a page of calls that are made by hand, and the JSON of the same calls.
//   sdpneg_make_page example|hostile|large PAGE JSON

#include <fcntl.h>
#include <unistd.h>

#include <functional>
#include <iostream>
#include <map>
#include <string>

#include "page/page.h"
#include "report/exampleCalls.h"

namespace {

using namespace tool;

/// Both outputs.
class Writer {
 public:
  Writer(const char* pageName, const char* jsonName)
      : pageFile_(opened(pageName)), jsonFile_(opened(jsonName)), page_(pageFile_), json_(jsonFile_) {}

  void write(const std::function<void(Writer&)>& calls, const Names& names, const std::string& title) {
    Page page(page_, names);
    CallsJson json(json_, {.withTexts = true, .names = names});
    pageCalls_ = &page;
    jsonCalls_ = &json;
    calls(*this);
    json.end(totals_);
    page.end({.title = title,
              .totals = totals_,
              .notes = {},
              .rules = {{"one-way", "Media goes one way only."},
                        {"private-address", "A private address is offered to a public peer."}}});
  }

  void add(const made::CallMaker& maker) {
    totals_.messages += maker.call.messages.size();
    totals_.retransmissions += maker.call.retransmissions();
    nextMessage = maker.nextMessage();
    ++nextCall;
    pageCalls_->add(maker.call);
    jsonCalls_->add(maker.call);
  }

  std::size_t nextCall = 1;
  std::size_t nextMessage = 1;

 private:
  static int opened(const char* name) { return ::open(name, O_CREAT | O_TRUNC | O_WRONLY | O_CLOEXEC, 0600); }

  Output pageFile_;
  Output jsonFile_;
  BufferedOutput page_;
  BufferedOutput json_;
  Page* pageCalls_ = nullptr;
  CallsJson* jsonCalls_ = nullptr;
  CallTotals totals_;
};

const char* const people[] = {"alice", "bob", "carol", "dave", "erin", "frank", "grace", "heidi"};

void nameEnds(made::CallMaker& maker) {
  maker.call.from = "sip:" + std::string(people[maker.call.number % 8]) + "@example.org";
  maker.call.to = "sip:" + std::string(people[(maker.call.number * 3 + 1) % 8]) + "@example.net";
}

void writeExample(Writer& writer) {
  using enum CallState;
  std::int64_t start = made::kMorning;
  for (int i = 0; i < 30; ++i) {
    start += (7 + i % 5 * 3) * made::kSecond + i * (17 * made::kMillisecond);
    constexpr CallState kShort[] = {failed, cancelled, ringing};
    made::CallMaker maker =
        i % 3 == 0   ? made::borderCall(writer.nextCall, writer.nextMessage, start)
        : i % 7 == 4 ? made::shortCall(writer.nextCall, writer.nextMessage, start, kShort[i % 9 / 3])
                     : made::plainCall(writer.nextCall, writer.nextMessage, start);
    nameEnds(maker);
    writer.add(maker);
  }
}

/// Texts that would do something where they are not taken as texts.
void writeHostile(Writer& writer) {
  using namespace std::string_literals;
  const std::string texts[] = {
      "</script><script>window.__pwned = 1</script>",
      "<!--<script>window.__pwned = 1</script>",
      "</script <script window.__pwned = 1 </script ",
      "<!--<script <!-- <script/",
      "]]><img src=x onerror='window.__pwned = 1'>",
      "\"'><svg onload=window.__pwned=1>",
      "\\u003c/script>\\\"; window.__pwned = 1; //",
      "\u2028\u2029\u202e\u2066 window.__pwned = 1",
      "\0\x01\x1b[2J\x7f"s,
      "\xff\xfe\xc0\xaf\xed\xa0\x80\xe2\x80",
      "__proto__",
      "constructor",
      "javascript:window.__pwned=1",
      "&lt;script&gt;window.__pwned = 1&lt;/script&gt;&amp;&#x3c;",
  };
  for (const std::string& text : texts) {
    made::CallMaker maker = made::borderCall(writer.nextCall, writer.nextMessage, made::kMorning);
    Call& call = maker.call;
    call.from = call.to = call.security = text;
    call.codecs = {text, text};
    for (Leg& leg : call.legs) leg.callId = leg.joinDetail = text + leg.callId;
    for (CallMessage& message : call.messages) {
      if (message.status == 0) message.method = text;
      message.text += "\r\na=" + text + "\r\n" + text;
      if (message.sdpSize != 0) message.sdpSize = message.text.size() - message.sdpBegin;
    }
    call.messages[2].text += text;
    call.messages[2].sdpSize += text.size();
    for (Trouble& trouble : call.troubles) trouble.rule = trouble.text = text;
    writer.add(maker);
  }
}

/// A hundred thousand messages, of which one call has five thousand.
void writeLarge(Writer& writer) {
  made::CallMaker longCall = made::borderCall(writer.nextCall, writer.nextMessage, made::kMorning);
  while (longCall.call.messages.size() < 5000) {
    longCall.wait(made::kSecond);
    const std::size_t came = longCall.add(0, made::alice, made::border, "INFO sip:bob@example.net", "INFO");
    longCall.addHop(came, longCall.add(1, made::border, made::bob, "INFO sip:bob@example.net", "INFO"));
    longCall.add(0, made::border, made::alice, "200 OK", "INFO");
  }
  writer.add(longCall);
  for (std::int64_t i = 0; writer.nextMessage <= 100000; ++i) {
    const std::int64_t start = made::kMorning + i * 31 * made::kMillisecond;
    made::CallMaker maker = i % 20 == 0 ? made::borderCall(writer.nextCall, writer.nextMessage, start)
                                        : made::plainCall(writer.nextCall, writer.nextMessage, start);
    nameEnds(maker);
    writer.add(maker);
  }
}

}  // namespace

int main(int count, char** arguments) {
  const std::map<std::string, void (*)(Writer&)> kinds = {
      {"example", writeExample}, {"hostile", writeHostile}, {"large", writeLarge}};
  const auto kind = count == 4 ? kinds.find(arguments[1]) : kinds.end();
  if (kind == kinds.end()) {
    std::cerr << "usage: sdpneg_make_page example|hostile|large PAGE JSON\n";
    return 2;
  }
  const bool isHostile = kind->first == "hostile";
  const Names names = {{{"198.51.100.5", isHostile ? "<script>window.__pwned = 1</script>" : "border"},
                        {"192.0.2.10", "phone"}}};
  Writer(arguments[2], arguments[3])
      .write(kind->second, names,
             isHostile ? "</title><script>window.__pwned = 1</script>" : "morning.pcapng");
  return 0;
}
