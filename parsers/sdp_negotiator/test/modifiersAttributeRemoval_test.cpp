#include "modifiersTestSupport.h"

// Removal of all lines that hold a text: SDES, DTLS-SRTP, ANAT and ICE attributes.

namespace {

using M = sdpModifications;

const TraceLine enteringSecure{8, 4, "Entering sdpRemoveSecureAttributes() method."};
TraceLine removedTrace(const std::string& prefix) {
  return {2, 2, "The " + prefix + " attribute has been removed from the SDP. Exiting..."};
}
TraceLine noneTrace(const std::string& prefix) {
  return {2, 2, "No " + prefix + " attribute found. Exiting."};
}
TraceLine unusable(const std::string& operation) {
  return {4, 3, operation + "(): The SDP buffer is null or holds no end of text. Exiting."};
}

/// The removal makes one text of the other with these traces, also in a block that ends behind the text's NUL.
void expectRemoval(const std::string& before, const TextEdit& edit, const std::string& after,
                   const Traces& traces) {
  TraceCapture trace;
  expectEdit(before, edit, 0, after);
  EXPECT_EQ(trace.takeLines(), traces) << before;
  const auto exact = std::make_unique<char[]>(before.size() + 1);
  std::memcpy(exact.get(), before.c_str(), before.size() + 1);
  EXPECT_EQ(edit(exact.get()), 0);
  EXPECT_STREQ(exact.get(), after.c_str());
}

/// Neither null nor a buffer without NUL is touched; the latter is traced where the removal would begin.
void expectRefusals(const TextEdit& edit, const Traces& ofNull, const Traces& ofUnterminated) {
  TraceCapture trace;
  EXPECT_EQ(edit(nullptr), 0);
  EXPECT_EQ(trace.takeLines(), ofNull);
  std::vector<char> text = unterminatedBuffer();
  EXPECT_EQ(edit(text.data()), 0);
  EXPECT_EQ(text, unterminatedBuffer());
  EXPECT_EQ(trace.takeLines(), ofUnterminated);
}

struct Removal {
  const char* name;
  std::string before;
  std::string after;
  bool found = false;  ///< only where the trace tells
};

const std::string crypto = "a=crypto:1 AES_CM_128_HMAC_SHA1_80 inline:abc\r\n";

const Removal cryptoRemovals[] = {
    {"none", session + audio, session + audio, false},
    {"an empty text", "", "", false},
    {"all of them", session + crypto + audio + crypto + crypto + video + crypto, session + audio + video,
     true},
    {"LF only", "v=0\na=crypto:1\nm=x\na=crypto:2\n", "v=0\nm=x\n", true},
    {"the first line", "a=crypto:1\r\nv=0\r\n", "v=0\r\n", true},
    {"nothing else", "a=crypto\n", "", true},
    {"a longer name", session + "a=cryptographic\r\n" + audio, session + audio, true},
    {"another case", session + "a=Crypto:1\r\n", session + "a=Crypto:1\r\n", false},
    // Deliberate: the text counts anywhere in a line, and what stands in front of it joins the next line.
    {"in a value", "s=x\r\na=note:a=crypto:1\r\nt=0 0\r\n", "s=x\r\na=note:t=0 0\r\n", true},
    {"made by a removal", "v=0\r\na=cry" + crypto + "pto:9\r\nt=0 0\r\n", "v=0\r\nt=0 0\r\n", true},
    // A line without LF stays and ends the removal.
    {"without LF", session + "a=crypto:1", session + "a=crypto:1", false},
    {"the last of two without LF", session + crypto + audio + "a=crypto:1\r",
     session + audio + "a=crypto:1\r", true},
};

TEST(RemoveSecureAttributes, TakesEveryLineOut) {
  for (const Removal& each : cryptoRemovals) {
    SCOPED_TRACE(each.name);
    expectRemoval(each.before, [](char* sdp) { return M::sdpRemoveSecureAttributes(sdp, "a=crypto"); },
                  each.after,
                  {enteringSecure, each.found ? removedTrace("a=crypto") : noneTrace("a=crypto")});
  }
}

TEST(RemoveSecureAttributes, TakesAnyText) {
  expectRemoval(session + audio + "a=key-mgmt:mikey abc\r\n" + crypto,
                [](char* sdp) { return M::sdpRemoveSecureAttributes(sdp, "a=key-mgmt:"); },
                session + audio + crypto, {enteringSecure, removedTrace("a=key-mgmt:")});
}

// The first LF from the match on ends what goes, also one that the text holds itself. Joined texts that match go too.
TEST(RemoveSecureAttributes, EndsALineAtAnLfOfTheTextItself) {
  const std::string text = "\r\na=";
  expectRemoval("v=0\r\na=\r\n\r\na=setup:active\r\n",
                [&](char* sdp) { return M::sdpRemoveSecureAttributes(sdp, text.c_str()); },
                "v=0a=a=setup:active\r\n", {enteringSecure, removedTrace(text)});
}

TEST(RemoveSecureAttributes, WithoutATextToLookForFindsNone) {
  for (const char* const prefix : {"", static_cast<const char*>(nullptr)}) {
    TraceCapture trace;
    expectUntouched(
        session + audio, [prefix](char* sdp) { return M::sdpRemoveSecureAttributes(sdp, prefix); }, 0);
    EXPECT_EQ(trace.takeLines(), (Traces{enteringSecure, noneTrace(""), enteringSecure, noneTrace("")}));
  }
}

TEST(RemoveSecureAttributes, RefusesABufferWithoutText) {
  expectRefusals([](char* sdp) { return M::sdpRemoveSecureAttributes(sdp, "a="); },
                 {enteringSecure, noneTrace("a=")},
                 {enteringSecure, unusable("sdpRemoveSecureAttributes"), noneTrace("a=")});
}

TEST(RemoveSecureAttributes, EmptiesAFullBuffer) {
  std::string lines;
  while (lines.size() + 4 <= kLongestBody) lines += "a=x\n";
  const std::string rest(kLongestBody - lines.size(), 'r');
  expectRemoval(lines + rest, [](char* sdp) { return M::sdpRemoveSecureAttributes(sdp, "a=x"); }, rest,
                {enteringSecure, removedTrace("a=x")});
}

const std::string dtls = "a=setup:actpass\r\na=fingerprint:sha-256 AB:CD\r\n";

Traces dtlsTraces(bool setup, bool fingerprint) {
  const std::string first = "a=setup:";
  const std::string second = "a=fingerprint:";
  return {{8, 4, "Entering sdpRemoveDTLSAttributes() method."},
          enteringSecure,
          setup ? removedTrace(first) : noneTrace(first),
          enteringSecure,
          fingerprint ? removedTrace(second) : noneTrace(second),
          {8, 4, "Exiting sdpRemoveDTLSAttributes() method."}};
}

TEST(RemoveDtls, TakesSetupAndFingerprintOutOfAllMedia) {
  expectRemoval(session + audio + dtls + video + dtls, &M::sdpRemoveDTLSAttributes, session + audio + video,
                dtlsTraces(true, true));
  expectRemoval(session + audio + "a=setup:active\r\n", &M::sdpRemoveDTLSAttributes, session + audio,
                dtlsTraces(true, false));
  expectRemoval(session + "a=fingerprint:sha-1 AB\r\n" + audio, &M::sdpRemoveDTLSAttributes, session + audio,
                dtlsTraces(false, true));
  expectRemoval(session + audio + "a=setup\r\n", &M::sdpRemoveDTLSAttributes, session + audio + "a=setup\r\n",
                dtlsTraces(false, false));
}

TEST(RemoveDtls, RefusesABufferWithoutText) {
  Traces unterminated = dtlsTraces(false, false);
  unterminated.insert(unterminated.begin() + 4, unusable("sdpRemoveSecureAttributes"));
  unterminated.insert(unterminated.begin() + 2, unusable("sdpRemoveSecureAttributes"));
  expectRefusals(&M::sdpRemoveDTLSAttributes, dtlsTraces(false, false), unterminated);
}

const TraceLine enteringAnat{8, 4, "Entering sdpRemoveAnatAttributes() method."};
const TraceLine anatDone{8, 4, "The ANAT attributes have been removed from the SDP. Exiting..."};

unsigned short removeAnatAttributes(char* sdp) {
  M::sdpRemoveAnatAttributes(sdp);
  return 0;
}

TEST(RemoveAnatAttributes, TakesGroupLinesButNotMidLines) {
  const std::string mid = "a=mid:1\r\n";
  expectRemoval(session + "a=group:ANAT 1 2\r\na=group:LS 1\r\n" + audio + mid + "a=group:ANAT\r\n",
                removeAnatAttributes, session + "a=group:LS 1\r\n" + audio + mid, {enteringAnat, anatDone});
  expectRemoval(session + audio + mid, removeAnatAttributes, session + audio + mid, {enteringAnat, anatDone});
}

TEST(RemoveAnatAttributes, RefusesABufferWithoutText) {
  expectRefusals(removeAnatAttributes, {enteringAnat, anatDone},
                 {enteringAnat, unusable("sdpRemoveAnatAttributes"), anatDone});
}

const Traces iceTraces{{8, 4, "Entering sdpRemoveFullICE() method."},
                       {4, 3, "The ICE attributes have been removed. Exiting..."}};
const std::string candidates =
    "a=candidate:1 1 UDP 2130706431 192.0.2.1 5004 typ host\r\n"
    "a=candidate:2 1 UDP 1694498815 198.51.100.1 5004 typ srflx\r\n";
const std::string remoteCandidates = "a=remote-candidates:1 192.0.2.7 5004\r\n";

const Removal iceRemovals[] = {
    {"none", session + audio, session + audio},
    {"credentials, options and candidates",
     session + "a=ice-options:trickle\r\n" + audio +
         "a=ice-ufrag:8hhY\r\na=ice-pwd:asd88fgpdd777uzjYhagZg\r\n" + candidates + "a=ptime:20\r\n",
     session + audio + "a=ptime:20\r\n"},
    {"each line",
     "a=ice-lite\na=ice-mismatch:x\na=candidate:\na=ice-ufrag:\na=remote-candidates:\na=ice-pwd:\n", ""},
    // Only with a colon, and for ice-lite without one.
    {"a bare ice-mismatch", session + audio + "a=ice-mismatch\r\n", session + audio + "a=ice-mismatch\r\n"},
    {"bare names", "a=ice-pwd\na=ice-ufrag\na=ice-options\na=candidate\na=remote-candidates\n",
     "a=ice-pwd\na=ice-ufrag\na=ice-options\na=candidate\na=remote-candidates\n"},
    {"ice-lite with a value", session + "a=ice-lite:1\r\n" + audio, session + audio},
    {"ice-pacing", session + "a=ice-pacing:50\r\n", session + "a=ice-pacing:50\r\n"},
    // Deliberate: anywhere in a line.
    {"in a value", "s=x\r\na=note:a=ice-lite\r\nt=0 0\r\n", "s=x\r\na=note:t=0 0\r\n"},
    // Candidates are looked for first, so that one without LF keeps what is looked for later.
    {"a candidate without LF", "v=0\na=ice-pwd:x\na=candidate:1\na=candidate:2",
     "v=0\na=ice-pwd:x\na=candidate:2"},
    {"a password without LF", "v=0\na=ice-ufrag:x\na=candidate:1\na=ice-pwd:x",
     "v=0\na=ice-ufrag:x\na=ice-pwd:x"},
    {"a candidate made by a later removal", "v=0\na=candia=ice-lite\ndate:1\na=ice-pwd:x\n", "v=0\n"},
};

TEST(RemoveIce, TakesEveryLineOut) {
  for (const Removal& each : iceRemovals) {
    SCOPED_TRACE(each.name);
    expectRemoval(each.before, &M::sdpRemoveICE, each.after, iceTraces);
  }
}

TEST(RemoveIce, RefusesABufferWithoutText) {
  expectRefusals(&M::sdpRemoveICE, iceTraces, {iceTraces[0], unusable("sdpRemoveICE"), iceTraces[1]});
}

const Traces candidateTraces{{8, 4, "Entering sdpRemoveCandidates() method."},
                             {8, 4, "The candidates have been removed from the SDP. Exiting..."}};

TEST(RemoveCandidates, LeavesTheOtherIceLines) {
  const std::string other = "a=ice-ufrag:8hhY\r\na=ice-pwd:x\r\na=ice-lite\r\na=ice-mismatch:x\r\n";
  expectRemoval(session + audio + candidates + other + remoteCandidates + video + candidates,
                &M::sdpRemoveCandidates, session + audio + other + video, candidateTraces);
  expectRemoval(session + audio + "a=end-of-candidates\r\n", &M::sdpRemoveCandidates,
                session + audio + "a=end-of-candidates\r\n", candidateTraces);
  expectRemoval("v=0\na=remote-candidates:1\na=candidate:1", &M::sdpRemoveCandidates,
                "v=0\na=remote-candidates:1\na=candidate:1", candidateTraces);
}

TEST(RemoveCandidates, RefusesABufferWithoutText) {
  expectRefusals(&M::sdpRemoveCandidates, candidateTraces,
                 {candidateTraces[0], unusable("sdpRemoveCandidates"), candidateTraces[1]});
}

}  // namespace
