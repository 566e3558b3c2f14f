#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <set>

#include "bodies.h"
#include "process.h"
#include "schemaCheck.h"
#include "sections/richBody.h"
#include "testFiles.h"

// The schema of sections: what it asks for, what docs/tool.md says of it, and whether the output keeps to it.

namespace {

using nlohmann::json;

const std::string schemaFile = SDPNEG_SOURCE_DIR "/data/sections.schema.json";
const json schema = json::parse(readBytes(schemaFile));

/// Goes through all objects that a schema describes by their properties.
template <typename Visit>
void forEachObject(const json& node, Visit visit) {
  if (node.is_object() && node.contains("properties") && node.contains("required")) visit(node);
  if (!node.is_structured()) return;
  for (const json& child : node) forEachObject(child, visit);
}

TEST(SectionsSchema, LeavesNoKeyOpen) {
  int objects = 0;
  forEachObject(schema, [&objects](const json& object) {
    ++objects;
    EXPECT_EQ(object["additionalProperties"], false) << object;
    std::set<std::string> keys;
    for (const auto& [key, property] : object["properties"].items()) keys.insert(key);
    EXPECT_EQ(object["required"].get<std::set<std::string>>(), keys);
  });
  EXPECT_EQ(objects, 9);  // the document, bodies, sessions, groups, sections, rtcp, crypto, ice, formats
}

TEST(SectionsSchema, HasTheKeysThatThePageLists) {
  const std::string page = readBytes(SDPNEG_SOURCE_DIR "/../../docs/tool.md");
  const std::size_t begin = page.find("\n### JSON of sections\n");
  ASSERT_NE(begin, std::string::npos);
  const std::string part = page.substr(begin, page.find("\n## ", begin) - begin);
  const auto expectListed = [&part](const json& object, const std::string& prefix) {
    for (const auto& [key, property] : object["properties"].items()) {
      EXPECT_NE(part.find("`" + prefix + key + "`"), std::string::npos) << prefix + key;
    }
  };
  for (const char* kind : {"body", "session", "section", "format"})
    expectListed(schema["definitions"][kind], "");
  const json& properties = schema["definitions"]["section"]["properties"];
  expectListed(properties["ice"], "ice.");
  expectListed(properties["rtcp"]["anyOf"][1], "rtcp.");
}

class SectionsSchemaCheck : public SchemaCheck {};

json documentOf(const std::vector<std::string>& inputs) {
  std::vector<std::string> arguments = {"sections", "--json"};
  arguments.insert(arguments.end(), inputs.begin(), inputs.end());
  return json::parse(runSdpneg(arguments, {.input = richBody}).out);
}

TEST_F(SectionsSchemaCheck, FindsNothingInTheOutput) {
  const TemporaryFolder folder;
  folder.write("empty.sdp", "");
  folder.write("none.sdp", "hello\n");
  folder.write("call.sdp", bodies::audioCall);
  folder.write("secure.sdp", bodies::secureCall);
  const json document = documentOf({"-", folder.path(), folder.path("missing")});
  ASSERT_EQ(document["bodies"].size(), 6U);
  EXPECT_EQ(mistakesIn(schemaFile, json::array({document})), std::vector<int>{0}) << errors();
}

TEST_F(SectionsSchemaCheck, FindsNothingInTheCorpus) {
  if (corpusFolder().empty()) GTEST_SKIP() << "SDP_CORPUS_DIR is not set";
  EXPECT_EQ(mistakesIn(schemaFile, json::array({documentOf({corpusFolder()})})), std::vector<int>{0})
      << errors();
}

TEST_F(SectionsSchemaCheck, FindsWhatIsWrong) {
  const json document = documentOf({});
  const struct {
    const char* place;
    json value;
  } cases[] = {{"/format", 2},
               {"/bodies/0/more", 1},
               {"/bodies/0/lines", -1},
               {"/bodies/0/session/direction", "both"},
               {"/bodies/0/session/groups/0/mids/0", 7},
               {"/bodies/0/session/bandwidth/AS", "256"},
               {"/bodies/0/sections/0/port", "9"},
               {"/bodies/0/sections/0/port", 65536},
               {"/bodies/0/sections/0/portCount", 0},
               {"/bodies/0/sections/0/media", nullptr},
               {"/bodies/0/sections/0/security", "secure"},
               {"/bodies/0/sections/0/rtcp/mux", true},
               {"/bodies/0/sections/0/formats", json::array()},
               {"/bodies/0/sections/0/formats/0/format", 111},
               {"/bodies/0/sections/0/formats/0/clock", "48000"},
               {"/bodies/0/sections/1/crypto/0/tag", "1"},
               {"/bodies/0/sections/2/media", "audio"},
               {"/bodies/0/sections/2/ice", nullptr}};
  json documents = json::array();
  for (const auto& each : cases) {
    documents.push_back(document);
    documents.back()[json::json_pointer(each.place)] = each.value;
  }
  documents.push_back(document);
  documents.back()["bodies"][0]["sections"][0]["formats"][0].erase("apt");
  const std::vector<int> mistakes = mistakesIn(schemaFile, documents);
  ASSERT_EQ(mistakes.size(), documents.size());
  for (std::size_t i = 0; i < std::size(cases); ++i) EXPECT_NE(mistakes[i], 0) << cases[i].place;
  EXPECT_NE(mistakes.back(), 0);
}

}  // namespace
