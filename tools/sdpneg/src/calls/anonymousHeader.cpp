#include "calls/anonymousHeader.h"

#include <algorithm>
#include <array>
#include <utility>

#include "calls/anonymousUri.h"
#include "captures/sipView.h"
#include "text/search.h"

namespace tool {
namespace {

constexpr auto npos = std::string_view::npos;

/// How a header's value is written.
enum class Form { addresses, via, any, credentials, protocol, product, prose, token };

struct Known {
  std::string_view name;
  Form form;
};
constexpr Known kKnown[] = {
    {"From", Form::addresses},
    {"To", Form::addresses},
    {"Contact", Form::addresses},
    {"Route", Form::addresses},
    {"Record-Route", Form::addresses},
    {"Path", Form::addresses},
    {"Service-Route", Form::addresses},
    {"Refer-To", Form::addresses},
    {"Referred-By", Form::addresses},
    {"Reply-To", Form::addresses},
    {"P-Asserted-Identity", Form::addresses},
    {"P-Preferred-Identity", Form::addresses},
    {"P-Called-Party-ID", Form::addresses},
    {"P-Associated-URI", Form::addresses},
    {"P-Served-User", Form::addresses},
    {"P-Profile-Key", Form::addresses},
    {"P-User-Database", Form::addresses},
    {"Remote-Party-ID", Form::addresses},
    {"Diversion", Form::addresses},
    {"History-Info", Form::addresses},
    {"Alert-Info", Form::addresses},
    {"Call-Info", Form::addresses},
    {"Error-Info", Form::addresses},
    {"Via", Form::via},
    {"Call-ID", Form::any},
    {"In-Reply-To", Form::any},
    {"Replaces", Form::any},
    {"Join", Form::any},
    {"Target-Dialog", Form::any},
    {"Session-ID", Form::any},
    {"Authorization", Form::credentials},
    {"Proxy-Authorization", Form::credentials},
    {"WWW-Authenticate", Form::credentials},
    {"Proxy-Authenticate", Form::credentials},
    {"Authentication-Info", Form::credentials},
    {"Proxy-Authentication-Info", Form::credentials},
    {"CSeq", Form::protocol},
    {"Max-Forwards", Form::protocol},
    {"Allow", Form::protocol},
    {"Allow-Events", Form::protocol},
    {"Supported", Form::protocol},
    {"Require", Form::protocol},
    {"Proxy-Require", Form::protocol},
    {"Unsupported", Form::protocol},
    {"Accept", Form::protocol},
    {"Accept-Encoding", Form::protocol},
    {"Accept-Language", Form::protocol},
    {"Content-Type", Form::protocol},
    {"Content-Encoding", Form::protocol},
    {"Content-Disposition", Form::protocol},
    {"Content-Language", Form::protocol},
    {"Content-Transfer-Encoding", Form::protocol},
    {"Content-Length", Form::protocol},
    {"Event", Form::protocol},
    {"Expires", Form::protocol},
    {"Min-Expires", Form::protocol},
    {"Session-Expires", Form::protocol},
    {"Min-SE", Form::protocol},
    {"RSeq", Form::protocol},
    {"RAck", Form::protocol},
    {"Subscription-State", Form::protocol},
    {"Date", Form::protocol},
    {"Timestamp", Form::protocol},
    {"MIME-Version", Form::protocol},
    {"Privacy", Form::protocol},
    {"P-Early-Media", Form::protocol},
    {"Retry-After", Form::protocol},
    {"Priority", Form::protocol},
    {"Recv-Info", Form::protocol},
    {"Info-Package", Form::protocol},
    {"Refer-Sub", Form::protocol},
    {"User-Agent", Form::product},
    {"Server", Form::product},
    {"Subject", Form::prose},
    {"Organization", Form::prose},
    {"Content-Description", Form::prose},
    {"Identity", Form::token},
};

/// Writes "name" <uri>;parameters, more of them behind commas.
class AddressWriter {
 public:
  AddressWriter(Replacements& replacements, std::string_view value, std::string& out)
      : replacements_(replacements), value_(value), out_(out) {}

  void write() {
    while (at_ < value_.size()) {
      switch (value_[at_]) {
        case ',':
          out_ += value_[at_++];
          break;
        case '<':
          writeBracketed();
          break;
        case ';':
          writeParameters();
          break;
        default:
          writeName();
      }
    }
  }

 private:
  std::string_view takeTo(std::size_t end) {
    const std::string_view taken = value_.substr(at_, end - at_);
    at_ = end;
    return taken;
  }

  void writeBracketed() {
    out_ += '<';
    ++at_;
    writeUri(replacements_, takeTo(std::min(value_.find('>', at_), value_.size())), out_);
    if (at_ == value_.size()) return;
    out_ += '>';
    ++at_;
  }

  /// One parameter and the semicolon before it.
  void writeParameters() {
    out_ += ';';
    ++at_;
    writeParameter(replacements_, takeTo(findUnquoted(value_, ";,", at_)), out_);
  }

  /// A name, or a URI without brackets.
  void writeName() {
    const std::string_view name = takeTo(findUnquoted(value_, "<;,", at_));
    const std::size_t quote = name.find('"');
    const std::size_t colon = name.find(':');
    const bool isName = at_ < value_.size() && value_[at_] == '<';
    if (!isName && colon != npos && quote == npos) return writeOpen(replacements_, name, out_);
    const std::size_t end = quote == npos ? npos : name.rfind('"');
    if (quote == npos || end == quote) return writeText(replacements_, name, Care::name, out_);
    writeText(replacements_, name.substr(0, quote), Care::name, out_);
    writeQuoted(name.substr(quote, end + 1 - quote), out_, [&](std::string_view text, std::string& to) {
      writeText(replacements_, text, Care::name, to);
    });
    writeText(replacements_, name.substr(end + 1), Care::name, out_);
  }

  Replacements& replacements_;
  std::string_view value_;
  std::string& out_;
  std::size_t at_ = 0;
};

std::size_t findBlank(std::string_view text, std::size_t from) {
  return std::min(text.find_first_of(" \t\r\n", from), text.size());
}
std::size_t skipBlanks(std::string_view text, std::size_t from) {
  return std::min(text.find_first_not_of(" \t\r\n", from), text.size());
}

/// "SIP/2.0/UDP host:port", with blanks wherever they may stand.
void writeSentBy(Replacements& replacements, std::string_view text, std::string& out) {
  std::size_t slash = text.find('/');
  if (slash != npos) slash = text.find('/', slash + 1);
  if (slash == npos) return writeOpen(replacements, text, out);
  const std::size_t begin = skipBlanks(text, findBlank(text, skipBlanks(text, slash + 1)));
  writeText(replacements, text.substr(0, begin), Care::protocol, out);
  const std::string_view sentBy = text.substr(begin);
  const std::size_t bracket = sentBy.starts_with('[') ? sentBy.find(']') : npos;
  const std::size_t blank = findBlank(sentBy, 0);
  std::size_t end = bracket != npos ? bracket + 1 : std::min(sentBy.find(':'), blank);
  const bool isAddress6 = bracket == npos && sentBy.substr(0, blank).find(':', end + 1) != npos;
  if (isAddress6) end = blank;
  writeHost(replacements, sentBy.substr(0, end), out);
  writeText(replacements, sentBy.substr(end), Care::protocol, out);
}

/// Pieces of a value, and which of them begin at its front or behind a comma.
template <typename WriteFirst>
void writeWithParameters(Replacements& replacements, std::string_view value, std::string& out,
                         const WriteFirst& writeFirst) {
  bool isFirst = true;
  for (std::size_t at = 0;;) {
    const std::size_t end = findUnquoted(value, ";,", at);
    const std::string_view piece = value.substr(at, end - at);
    if (isFirst) {
      writeFirst(piece);
    } else {
      writeParameter(replacements, piece, out);
    }
    if (end == value.size()) return;
    isFirst = value[end] == ',';
    out += value[end];
    at = end + 1;
  }
}

/// "Digest username="...", realm="..."", or what a scheme has that is no list.
void writeCredentials(Replacements& replacements, std::string_view value, std::string& out) {
  const std::size_t blank = findBlank(value, 0);
  const bool hasScheme = value.substr(0, blank).find('=') == npos;
  std::size_t at = hasScheme ? blank : 0;
  writeText(replacements, value.substr(0, at), Care::protocol, out);
  if (hasScheme && !sdpneg::startsWithNoCase(value, "Digest") && value.find('"') == npos) {
    const std::size_t begin = skipBlanks(value, at);
    out += value.substr(at, begin - at);
    return writeHidden(value.substr(begin), out);
  }
  for (;;) {
    const std::size_t end = findUnquoted(value, ",", at);
    writeParameter(replacements, value.substr(at, end - at), out);
    if (end == value.size()) return;
    out += ',';
    at = end + 1;
  }
}

/// What headers have that nothing is known of, and what such ones repeat: both must come out alike. Addresses are told by
/// their brackets.
void writeAny(Replacements& replacements, std::string_view value, std::string& out) {
  const std::size_t bracket = value.find('<');
  if (bracket != npos && value.find(':', bracket) != npos)
    return AddressWriter(replacements, value, out).write();
  writeWithParameters(replacements, value, out, [&](std::string_view piece) {
    const bool isParameter = piece.substr(0, piece.find('=')).find_first_of("@:<\" \t\r\n") == npos;
    if (isParameter && piece.find('=') != npos) {
      writeParameter(replacements, piece, out);
    } else {
      writeOpen(replacements, piece, out);
    }
  });
}

void writeIn(Form form, Replacements& replacements, std::string_view value, std::string& out) {
  switch (form) {
    case Form::addresses:
      return AddressWriter(replacements, value, out).write();
    case Form::via:
      return writeWithParameters(replacements, value, out,
                                 [&](std::string_view piece) { writeSentBy(replacements, piece, out); });
    case Form::any:
      return writeAny(replacements, value, out);
    case Form::token:
      return writeWithParameters(replacements, value, out,
                                 [&](std::string_view piece) { writeHidden(piece, out); });
    case Form::credentials:
      return writeCredentials(replacements, value, out);
    case Form::protocol:
      return writeText(replacements, value, Care::protocol, out);
    case Form::product:
      return writeText(replacements, value, Care::product, out);
    case Form::prose:
      return writeText(replacements, value, Care::prose, out);
  }
}

}  // namespace

void writeHeaderValue(Replacements& replacements, std::string_view name, std::string_view value,
                      std::string& out) {
  const Known* const known =
      std::ranges::find_if(kKnown, [&](const Known& one) { return isHeaderName(name, one.name); });
  writeIn(known != std::end(kKnown) ? known->form : Form::any, replacements, value, out);
}

}  // namespace tool
