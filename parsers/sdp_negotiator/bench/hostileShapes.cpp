#include "hostileShapes.h"

#include <string_view>

// Lines and pieces of lines that edits and the analysis look for, nearly look for, or walk over.

namespace {

struct Piece {
  const char* name;
  const char* text;
};

constexpr std::string_view kSession =
    "v=0\r\no=- 1 1 IN IP4 192.0.2.1\r\ns=-\r\nc=IN IP4 192.0.2.1\r\nt=0 0\r\n";

constexpr Piece kBeginnings[] = {
    {"nothing", ""},
    {"LF", "\n"},
    {"session", "v=0\r\no=- 1 1 IN IP4 192.0.2.1\r\ns=-\r\nc=IN IP4 192.0.2.1\r\nt=0 0\r\n"},
    {"audio",
     "v=0\r\no=- 1 1 IN IP4 192.0.2.1\r\ns=-\r\nc=IN IP4 192.0.2.1\r\nt=0 0\r\nm=audio 49170 RTP/AVP 0 8 96 97\r\n"},
    {"video",
     "v=0\r\no=- 1 1 IN IP6 2001:db8::1\r\ns=-\r\nt=0 0\r\nm=video 49170 RTP/SAVP 96 97\r\nc=IN IP6 2001:db8::2\r\na=rtpmap:96 H264/90000\r\n"},
    {"o-line", "v=0\r\no="},
    {"c-line", "v=0\r\no=- 1 1 IN IP4 192.0.2.1\r\ns=-\r\nc="},
    {"m-line",
     "v=0\r\no=- 1 1 IN IP4 192.0.2.1\r\ns=-\r\nc=IN IP4 192.0.2.1\r\nt=0 0\r\nm=audio 49170 RTP/AVP "},
    {"a-line",
     "v=0\r\no=- 1 1 IN IP4 192.0.2.1\r\ns=-\r\nc=IN IP4 192.0.2.1\r\nt=0 0\r\nm=video 49170 RTP/AVP 96 97\r\na=rtpmap:96 "},
};

/// Whole lines.
constexpr Piece kLines[] = {
    {"LF", "\n"},
    {"CRLF", "\r\n"},
    {"blank lines", " \r\n"},
    {"x lines", "x\n"},
    {"m=", "m=\n"},
    {"m=video", "m=video\n"},
    {"m=audio", "m=audio\n"},
    {"m=video with port", "m=video 1 RTP/AVP 0\n"},
    {"m=video with port 0", "m=video 0 RTP/AVP 0\r\n"},
    {"m=video and c=", "m=video 1 RTP/AVP 0\nc=IN IP6 ::1\n"},
    {"m=video and b=", "m=video 1 RTP/AVP 0\nb=AS:9\n"},
    {"m=audio with port", "m=audio 9000 RTP/AVP 0\r\n"},
    {"m=audio with port 0", "m=audio 0 RTP/AVP 0\n"},
    {"m=audio secure, port 0", "m=audio 0 RTP/SAVP 0\n"},
    {"m=audio secure", "m=audio 9 RTP/SAVP 0\n"},
    {"m=audio and c=", "m=audio 9 RTP/AVP 0\nc=IN IP4 1.1.1.1\n"},
    {"m=audio and crypto", "m=audio 9 RTP/SAVP 0\na=crypto:1 A B\n"},
    {"m=audio and mode", "m=audio 9 RTP/AVP 0\na=sendrecv\n"},
    {"m=audio and rtpmap", "m=audio 9 RTP/AVP 96\na=rtpmap:96 PCMU/8000\n"},
    {"m=video and rtpmap", "m=video 9 RTP/AVP 96\na=rtpmap:96 H264/9\na=fmtp:96 profile-level-id=42e01f\n"},
    {"m=audio, digits", "m=audio 99999999999999999999 RTP/AVP 0\n"},
    {"m=image", "m=image 9 udptl t38\n"},
    {"m=application", "m=application 9 TCP x\n"},
    {"m=message", "m=message 9 TCP *\n"},
    {"m=text", "m=text 9 RTP/AVP 98\n"},
    {"m=x", "m=x 1 x 1\n"},
    {"m=vide", "m=vide\n"},
    {"m=audi", "m=audi 9 RTP/AVP 0\n"},
    {"secure twins", "m=audio 9 RTP/SAVP 0\na=crypto:1 A B\nm=audio 9 RTP/AVP 0\n"},
    {"c= IPv4", "c=IN IP4 1.1.1.1\n"},
    {"c= IPv6", "c=IN IP6 ::1\r\n"},
    {"c=", "c=\n"},
    {"o=", "o=- 1 1 IN IP4 1.1.1.1\n"},
    {"o= alone", "o=\n"},
    {"s=", "s=-\n"},
    {"b=", "b=AS:9\n"},
    {"b= big", "b=AS:999999999\r\n"},
    {"t=", "t=0 0\n"},
    {"a=", "a=\n"},
    {"a=x", "a=x\n"},
    {"a=x:", "a=x:y\r\n"},
    {"a=rtpmap", "a=rtpmap:96 PCMU/8000\n"},
    {"a=rtpmap:", "a=rtpmap:\n"},
    {"a=rtpmap bare", "a=rtpmap\n"},
    {"a=rtpmap, digits", "a=rtpmap:0000000000000000000000000000000000000000000000000000000000000096 X/1\n"},
    {"a=fmtp", "a=fmtp:96 x\r\n"},
    {"a=fmtp bare", "a=fmtp\n"},
    {"a=fmtp profile", "a=fmtp:97 profile-level-id=42e01f\n"},
    {"a=fmtp 101", "a=fmtp:101 0-15\n"},
    {"a=sendrecv", "a=sendrecv\n"},
    {"a=sendonly", "a=sendonly\n"},
    {"a=inactive", "a=inactive\r\n"},
    {"a=send", "a=sendonlx\n"},
    {"a=crypto", "a=crypto:1 AES_CM_128_HMAC_SHA1_80 inline:x\n"},
    {"a=crypto bare", "a=crypto\n"},
    {"a=crypt", "a=crypt\n"},
    {"a=key-mgmt", "a=key-mgmt:mikey x\n"},
    {"a=fingerprint", "a=fingerprint:sha-1 AA\n"},
    {"a=setup", "a=setup:actpass\n"},
    {"a=group", "a=group:ANAT 1 2\n"},
    {"a=mid", "a=mid:1\n"},
    {"a=candidate v4", "a=candidate:1 1 UDP 1 192.0.2.1 49170 typ host\n"},
    {"a=candidate v6", "a=candidate:1 1 UDP 1 ::1 49170 typ host\n"},
    {"a=candidate bare", "a=candidate\n"},
    {"a=remote-candidates", "a=remote-candidates:1 192.0.2.1 1\n"},
    {"a=ice", "a=ice-ufrag:x\n"},
    {"a=ice-lite", "a=ice-lite\n"},
    {"a=rtcp", "a=rtcp:9 IN IP6 ::1\n"},
    {"a=curr", "a=curr:qos e2e none\n"},
    {"a=des", "a=des:qos none e2e sendrecv\n"},
    {"a=conf", "a=conf:qos e2e none\n"},
    {"a=ptime", "a=ptime:20\n"},
    {"a=silenceSupp", "a=silenceSupp:on - - - -\n"},
    {"a=ecan", "a=ecan:fb on -\n"},
    {"a=tcap", "a=tcap:1 RTP/SAVP\n"},
    {"a=acfg", "a=acfg:1 t=1\n"},
    {"a=pcfg", "a=pcfg:1 t=1\n"},
    {"a= of each name", "a=curr:x\na=crypto:x\na=ice-x\na=candidate:x\na=setup:x\na=mid:x\na=fmtp:96 x\n"},
    {"192.0.2.1", "192.0.2.1\n"},
};

/// What a long line is made of.
constexpr Piece kRuns[] = {
    {"CR", "\r"},
    {"blank", " "},
    {"tab", "\t"},
    {"x", "x"},
    {"0", "0"},
    {"9", "9"},
    {"a=", "a="},
    {"c=", "c="},
    {"m=", "m="},
    {"o=", "o="},
    {"b=", "b="},
    {":", ":"},
    {";", ";"},
    {"/", "/"},
    {"formats", "9 "},
    {"formats 0", " 0"},
    {"dynamic formats", "96 "},
    {"m=video", "m=video"},
    {"m=audio", "m=audio"},
    {"m=vide", "m=vide"},
    {"m=audi", "m=audi"},
    {"m=audio and c", "m=audio 1 RTP/SAVP c=IN IP6 "},
    {"m=video and c", "m=video 0 RTP/AVP c=IN IP4 "},
    {"m=video and b", "m=video b=AS:99 "},
    {"a=crypto", "a=crypto:"},
    {"a=crypt", "a=crypt"},
    {"a=candidate", "a=candidate"},
    {"a=candidat", "a=candidat"},
    {"a=mid", "a=mid:"},
    {"a=ecan", "a=ecan"},
    {"a=fmtp", "a=fmtp:9"},
    {"a=rtpmap", "a=rtpmap:96 "},
    {"a=key-mgmt", "a=key-mgmt"},
    {"a=c", "a=cu"},
    {"RTP/SAV", "RTP/SAV"},
    {"RTP/SAVP", "RTP/SAVP "},
    {"RTP/AVP", "RTP/AVP "},
    {" 0 RTP", " 0 RT"},
    {"IN IP4", "IN IP4 "},
    {"c=IN IP", "c=IN IP"},
    {"profile-level-id=", "profile-level-id=42e01f;"},
    {"profile-level-id", "profile-level-id"},
    {"video", "video"},
    {"rtpmap", "rtpmap"},
    {"192.0.2.1", "192.0.2."},
};

/// Those that are looked for from each of the others: what comes first is repeated over the first half.
constexpr const char* kFirstHalves[] = {"m=\n",
                                        "m=video\n",
                                        "m=audio\n",
                                        "m=video 1 RTP/AVP 0\n",
                                        "m=audio 1 RTP/AVP 0\n",
                                        "m=audio 0 RTP/AVP 0\n",
                                        "m=audio 1 RTP/SAVP 0\n",
                                        "m=x\n",
                                        "a=\n",
                                        "a=crypto:1 x\n",
                                        "a=rtpmap:96 X/1\n",
                                        "a=fmtp:96 x\n",
                                        "a=candidate:1 1 UDP 1 ::1 1 typ host\n",
                                        "c=IN IP4 1.1.1.1\n",
                                        "\n",
                                        "\r",
                                        "m=",
                                        "m=video",
                                        "a=mid:",
                                        "b=AS:9\n",
                                        "o=",
                                        "a=sendrecv\n",
                                        "m=video 0 RTP/AVP c=IN IP4 "};
constexpr const char* kSecondHalves[] = {"\n",
                                         "\r",
                                         "x",
                                         " ",
                                         "0",
                                         "a=",
                                         "a=\n",
                                         "m=",
                                         "m=\n",
                                         "c=",
                                         "c=x\n",
                                         "a=rtpmap:96 X/1\n",
                                         "m=video\n",
                                         "m=video 0 RTP/AVP 0\n",
                                         "m=audio 9 RTP/AVP 0\n",
                                         "a=crypto:1 x\n",
                                         "a=mid:1\n",
                                         "b=AS:9\n",
                                         "b="};

std::string shown(std::string_view text) {
  std::string out;
  for (const char c : text) {
    if (c == '\n') {
      out += "\\n";
    } else if (c == '\r') {
      out += "\\r";
    } else {
      out += c;
    }
  }
  return out;
}

void addPairs(std::vector<Shape>& shapes) {
  for (const char* const first : kFirstHalves) {
    for (const char* const second : kSecondHalves) {
      for (const std::string& beginning :
           {std::string("\n"), std::string(kSession) + "m=audio 1 RTP/AVP 96\r\n"}) {
        shapes.push_back(
            {shown(first) + " then " + shown(second) + (beginning == "\n" ? "" : " behind audio"),
             {beginning, first, second}});
      }
    }
  }
}

/// Text that hardly repeats, as much of it as a body can have that still fits the store when it is deflated.
void addVaried(std::vector<Shape>& shapes) {
  std::string digits;
  std::uint32_t state = 1;
  for (int line = 0; line < 75; ++line) {
    digits += "a=";
    for (int i = 0; i < 36; ++i) {
      state = state * 1664525U + 1013904223U;
      digits += "0123456789abcdef"[state >> 28U];
    }
    digits += "\r\n";
  }
  shapes.push_back({"varied a-lines", {std::string(kSession), digits}});
}

}  // namespace

std::vector<Shape> hostileShapes() {
  std::vector<Shape> shapes;
  for (const Piece& beginning : kBeginnings) {
    for (const Piece& line : kLines)
      shapes.push_back({std::string(line.name) + " behind " + beginning.name, {beginning.text, line.text}});
    for (const Piece& run : kRuns)
      shapes.push_back(
          {std::string("run of ") + run.name + " behind " + beginning.name, {beginning.text, run.text}});
  }
  addPairs(shapes);
  addVaried(shapes);
  return shapes;
}
