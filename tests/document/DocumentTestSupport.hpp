// Helpers for the document tests: a recorder of observation events, and a fixture with an
// undo-recording document whose steps are dropped at the end (groups hold their document
// strongly and undo steps hold groups, so the steps would keep both alive).
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "foundation/document/IconComposition.hpp"
#include "foundation/document/IconwrightDocument.hpp"

namespace iconwright::testing {

class EventLog {
 public:
  explicit EventLog(const IconwrightDocumentMember& member)
      : token_(member.observe([this](const ObservationEvent& event) {
          members.push_back(event.member);
          properties.emplace_back(event.property);
        })) {}
  EventLog(const EventLog&) = delete;
  EventLog& operator=(const EventLog&) = delete;

  void clear() {
    members.clear();
    properties.clear();
  }

  std::vector<const void*> members;
  std::vector<std::string> properties;

 private:
  ObservationToken token_;
};

class DocumentTest : public ::testing::Test {
 protected:
  void TearDown() override { document->removeAllSteps(); }

  /// Runs every undo step, newest first.
  void undoAll() {
    while (document->undo()) {
    }
  }
  void redoAll() {
    while (document->redo()) {
    }
  }

  std::shared_ptr<UndoManagerDocument> document = std::make_shared<UndoManagerDocument>();
};

/// The names of the members, for readable comparisons.
template <class Member>
std::vector<std::string> namesOf(const std::vector<std::shared_ptr<Member>>& members) {
  std::vector<std::string> names;
  for (const auto& member : members) names.push_back(member->inspectedName());
  return names;
}

}  // namespace iconwright::testing
