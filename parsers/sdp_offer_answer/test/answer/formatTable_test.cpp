#include "answer/answerTestSupport.h"

// When formats are the same, and what the answer says of their parameters: an encoding, the fmtp of the offer and that
// of the local section, each without its payload type, and that of the answer.

using namespace answerTest;

namespace {

struct Pair {
  const char* what;
  const char* encoding;
  const char* offered;  ///< null without a fmtp
  const char* local;
  const char* answered;
};

std::string sectionOf(const char* port, const char* payload, const char* encoding, const char* fmtp) {
  std::string text =
      std::string("m=audio ") + port + " RTP/AVP " + payload + "|a=rtpmap:" + payload + " " + encoding + "|";
  if (fmtp != nullptr) text += std::string("a=fmtp:") + payload + " " + fmtp + "|";
  return text;
}

void expectSame(std::initializer_list<Pair> pairs) {
  for (const Pair& pair : pairs) {
    const std::string offer = sectionOf("4000", "99", pair.encoding, pair.offered);
    const std::string local = sectionOf("5000", "96", pair.encoding, pair.local);
    const std::string answer = sectionOf("5000", "99", pair.encoding, pair.answered);
    expectAnswers({{pair.what, offer.c_str(), local.c_str(), answer.c_str()}});
  }
}

struct Different {
  const char* what;
  const char* encoding;
  const char* offered;
  const char* local;
};

void expectDifferent(std::initializer_list<Different> pairs) {
  for (const Different& pair : pairs) {
    const std::string offer = sectionOf("4000", "99", pair.encoding, pair.offered);
    const std::string local = sectionOf("5000", "96", pair.encoding, pair.local);
    expectRefusals({{pair.what, offer.c_str(), local.c_str(), {sdp::SectionOutcome::noCommonFormat}}});
  }
}

TEST(FormatTable, ComparesProfilesOfH264) {
  const char* const h264 = "H264/90000";
  expectSame(
      {{"the same", h264, "profile-level-id=42e01f", "profile-level-id=42E01F", "profile-level-id=42E01F"},
       {"Constrained Baseline as a Main", h264, "profile-level-id=4d801e", "profile-level-id=42E01E",
        "profile-level-id=42E01E"},
       {"Constrained Baseline as an Extended", h264, "profile-level-id=58c01e", "profile-level-id=42401e",
        "profile-level-id=42401e"},
       {"Baseline as an Extended", h264, "profile-level-id=58801e", "profile-level-id=42001e",
        "profile-level-id=42001e"},
       {"outside the table", h264, "profile-level-id=640c1f", "profile-level-id=640c1f",
        "profile-level-id=640c1f"},
       {"none offered", h264, nullptr, "profile-level-id=64001f", "profile-level-id=64001f"},
       {"none of ours", h264, "profile-level-id=64001f", nullptr, nullptr},
       {"no digits offered", h264, "profile-level-id=high", "profile-level-id=64001f",
        "profile-level-id=64001f"},
       {"modes told and not", h264, "packetization-mode=0", nullptr, nullptr}});
  expectDifferent(
      {{"High and Constrained High", h264, "profile-level-id=640c1f", "profile-level-id=64001f"},
       {"Baseline and Constrained Baseline", h264, "profile-level-id=42001f", "profile-level-id=42e01f"},
       {"Main and Extended", h264, "profile-level-id=4d001f", "profile-level-id=58001f"},
       {"High 10 and its Intra", h264, "profile-level-id=6e001f", "profile-level-id=6e101f"},
       {"modes", h264, "packetization-mode=1", "packetization-mode=0"},
       {"mode 0 is meant where none is told", h264, "packetization-mode=1", nullptr}});
}

TEST(FormatTable, LowersLevelsOfH264) {
  const char* const h264 = "H264/90000";
  expectSame(
      {{"the offered one is lower", h264, "profile-level-id=42e00d",
        "profile-level-id=42E01F;packetization-mode=0", "profile-level-id=42e00d;packetization-mode=0"},
       {"ours is lower", h264, "profile-level-id=42e01f", "profile-level-id=42E00D",
        "profile-level-id=42E00D"},
       {"our bytes, their level", h264, "profile-level-id=4d800c", "profile-level-id=42E01F",
        "profile-level-id=42e00c"},
       {"1b is under 1.1", h264, "profile-level-id=42f00b", "profile-level-id=42e00b",
        "profile-level-id=42f00b"},
       {"1.1 is over 1b", h264, "profile-level-id=42e00b", "profile-level-id=42f00b",
        "profile-level-id=42f00b"},
       {"1 is under 1b", h264, "profile-level-id=42e00a", "profile-level-id=42e00b",
        "profile-level-id=42e00a"},
       {"1b of a high profile has a number", h264, "profile-level-id=640009", "profile-level-id=64001f",
        "profile-level-id=640009"},
       {"1b of 4D says the same as of 42", h264, "profile-level-id=4d900b", "profile-level-id=42e01e",
        "profile-level-id=42f00b"},
       {"1.1 without the flag of 1b", h264, "profile-level-id=42e00b", "profile-level-id=42f01e",
        "profile-level-id=42e00b"},
       {"each has its own level", h264, "profile-level-id=42e00a;level-asymmetry-allowed=1",
        "level-asymmetry-allowed=1; profile-level-id=42E01F",
        "level-asymmetry-allowed=1; profile-level-id=42E01F"},
       {"only one side may", h264, "profile-level-id=42e00a",
        "level-asymmetry-allowed=1; profile-level-id=42E01F",
        "level-asymmetry-allowed=1; profile-level-id=42e00a"}});
}

TEST(FormatTable, ComparesProfilesOfNewerVideo) {
  expectSame({{"H265", "H265/90000", "level-id=93;tx-mode=srst", "profile-id=1;tier-flag=0",
               "profile-id=1;tier-flag=0"},
              {"VP9", "VP9/90000", "profile-id=0", nullptr, nullptr},
              {"AV1", "AV1/90000", "level-idx=5;profile=0;tier=0", "profile=0", "profile=0"},
              {"VP8 has no such", "VP8/90000", "profile-id=1", "max-fs=3600", "max-fs=3600"}});
  expectDifferent({{"H265 profile", "H265/90000", "profile-id=2", nullptr},
                   {"H265 tier", "H265/90000", "tier-flag=1", "profile-id=1"},
                   {"H265 transmission", "H265/90000", "tx-mode=MRST", nullptr},
                   {"VP9 profile", "VP9/90000", "profile-id=2", "profile-id=0"},
                   {"AV1 profile", "AV1/90000", "profile=1", nullptr}});
}

TEST(FormatTable, ComparesAmr) {
  expectSame(
      {{"aligned", "AMR-WB/16000", "octet-align=1", "octet-align=1;mode-change-capability=2",
        "octet-align=1;mode-change-capability=2"},
       {"the common modes in our order", "AMR/8000", "mode-set=0,2,4,7", "octet-align=0; mode-set=7, 5,2",
        "octet-align=0; mode-set=7,2"},
       {"all our modes", "AMR/8000", "mode-set=0,2,4", "mode-set=2,0", "mode-set=2,0"},
       {"the offer's modes stay", "AMR/8000", "mode-set=0,2", "octet-align=0", "octet-align=0;mode-set=0,2"},
       {"the offer's modes without a fmtp of ours", "AMR/8000", "mode-set=0,2", nullptr, "mode-set=0,2"},
       {"our modes", "AMR/8000", nullptr, "mode-set=7", "mode-set=7"},
       {"both interleaved", "AMR/8000", "octet-align=1;interleaving=30", "octet-align=1;interleaving",
        "octet-align=1;interleaving"}});
  expectDifferent({{"alignment", "AMR/8000", "octet-align=1", nullptr},
                   {"interleaving", "AMR/8000", "interleaving=30", nullptr},
                   {"crc", "AMR/8000", "crc=1", "crc=0"},
                   {"sorting", "AMR-WB/16000", "robust-sorting=1", nullptr},
                   {"no mode in common", "AMR/8000", "mode-set=0,1", "mode-set=2,3"},
                   {"no mode at all", "AMR/8000", "mode-set=\"0\"", "mode-set=0,2"}});
}

TEST(FormatTable, AgreesOnG729AndIlbc) {
  expectSame({{"annex B is off for both", "G729/8000", "annexb=no", nullptr, "annexb=no"},
              {"annex B of ours goes", "G729/8000", "annexb=NO", "annexb=yes", "annexb=no"},
              {"annex B is off for us", "G729/8000", nullptr, "annexb=no", "annexb=no"},
              {"annex B is on", "G729/8000", "annexb=yes", "annexb=yes", "annexb=yes"},
              {"30 ms are the longer", "iLBC/8000", "mode=30", "mode=20", "mode=30"},
              {"30 ms where nothing is told", "iLBC/8000", nullptr, "mode=20", "mode=30"},
              {"30 ms of ours", "iLBC/8000", "mode=20", "mode=30", "mode=30"},
              {"30 ms of ours where nothing is told", "iLBC/8000", "mode=20", nullptr, "mode=30"},
              {"30 ms of ours beside something else", "iLBC/8000", "mode=20", "x=1", "x=1;mode=30"},
              {"30 ms of ours without a value", "iLBC/8000", "mode=20", "mode=", "mode=30"},
              {"another mode is told", "iLBC/8000", "mode=25", nullptr, "mode=30"},
              {"30 ms for both", "iLBC/8000", "mode=30", nullptr, nullptr},
              {"30 ms where neither tells", "iLBC/8000", nullptr, nullptr, nullptr},
              {"20 ms for both", "iLBC/8000", "mode=20", "mode=20", "mode=20"}});
}

TEST(FormatTable, AgreesOnTelephoneEvents) {
  const char* const events = "telephone-event/8000";
  expectSame({{"the same", events, "0-15", "0-15", "0-15"},
              {"fewer offered", events, "0-11", "0-16", "0-11"},
              {"fewer of ours", events, "0-15,66", "0-11,66", "0-11,66"},
              {"gaps", events, "0-5,8,32-40", "1-9,36,39-41", "1-5,8,36,39-40"},
              {"none told means the keys", events, nullptr, "0-16", "0-15"},
              {"fewer offered and none told", events, "0-11", nullptr, "0-11"},
              {"neither tells", events, nullptr, nullptr, nullptr},
              {"something else means the keys", events, "events=0-9", "0-15", "0-15"},
              {"what stands behind stays", events, "0-9", "0-15; x=1", "0-9; x=1"}});
  expectDifferent({{"none in common", events, "0-15", "32-35"}});
}

TEST(FormatTable, ComparesEncodings) {
  expectAnswers(
      {{"without regard to case", "m=audio 4000 RTP/AVP 97|a=rtpmap:97 pcmu/8000|", "m=audio 5000 RTP/AVP 0|",
        "m=audio 5000 RTP/AVP 97|a=rtpmap:97 pcmu/8000|"},
       {"one channel is meant where none is told", "m=audio 4000 RTP/AVP 97|a=rtpmap:97 L16/16000/1|",
        "m=audio 5000 RTP/AVP 98|a=rtpmap:98 l16/16000|", "m=audio 5000 RTP/AVP 97|a=rtpmap:97 l16/16000|"}});
  const auto noFormat = {sdp::SectionOutcome::noCommonFormat};
  expectRefusals({{"another clock", "m=audio 4000 RTP/AVP 97|a=rtpmap:97 SILK/16000|",
                   "m=audio 5000 RTP/AVP 97|a=rtpmap:97 SILK/8000|", noFormat},
                  {"other channels", "m=audio 4000 RTP/AVP 97|a=rtpmap:97 opus/48000/2|",
                   "m=audio 5000 RTP/AVP 97|a=rtpmap:97 opus/48000|", noFormat},
                  {"an unknown format equals nothing", "m=audio 4000 RTP/AVP 97|", "m=audio 5000 RTP/AVP 97|",
                   noFormat}});
}

}  // namespace
