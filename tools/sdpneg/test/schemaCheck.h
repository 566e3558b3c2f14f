#ifndef SDPNEG_TEST_SCHEMA_CHECK_H
#define SDPNEG_TEST_SCHEMA_CHECK_H

#include <gtest/gtest.h>

#include <cstdlib>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "process.h"
#include "testFiles.h"

// Holds JSON against a schema.

/// The Python that has the module jsonschema; empty when none has.
inline std::string python() {
  for (const char* const each : {"python3", "/usr/bin/python3"}) {
    if (std::system((std::string(each) + " -c 'import jsonschema' >/dev/null 2>&1").c_str()) == 0)
      return each;
  }
  return {};
}

class SchemaCheck : public testing::Test {
 protected:
  void SetUp() override {
    if (python().empty()) GTEST_SKIP() << "python3-jsonschema is not installed";
  }

  /// How many mistakes each document has, with what they are in `errors()`.
  std::vector<int> mistakesIn(const std::string& schemaFile, const nlohmann::json& documents) const {
    folder_.write("documents", documents.dump());
    folder_.write("check.py",
                  "import json, sys\n"
                  "from jsonschema import Draft7Validator\n"
                  "schema, documents = (json.load(open(name)) for name in sys.argv[1:])\n"
                  "Draft7Validator.check_schema(schema)\n"
                  "found = [list(Draft7Validator(schema).iter_errors(each)) for each in documents]\n"
                  "for each in found:\n"
                  "  for error in each: print(error.message[:200], list(error.path), file=sys.stderr)\n"
                  "print(json.dumps([len(each) for each in found]))\n");
    const std::string command = python() + " '" + folder_.path("check.py") + "' '" + schemaFile + "' '" +
                                folder_.path("documents") + "' >'" + folder_.path("counts") + "' 2>'" +
                                folder_.path("errors") + "'";
    EXPECT_EQ(std::system(command.c_str()), 0) << errors();
    return nlohmann::json::parse(readBytes(folder_.path("counts")), nullptr, false).get<std::vector<int>>();
  }
  std::string errors() const { return readBytes(folder_.path("errors")); }

 private:
  TemporaryFolder folder_;
};

#endif
