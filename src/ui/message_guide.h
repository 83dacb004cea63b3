#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

// What the component's messages mean and what helps; the one source for every place that explains
// them.

namespace tessary {

enum class MessageGroup {
  kReports,    // what stands over the messages of a report
  kChecks,     // files, folders and reports that do not fit
  kFiles,      // reading, writing, backups
  kInside,     // steps inside the work, which name the place of another message
  kForesight,  // what a check finds before a run
  kWarnings,   // questions and what deserves attention
  kNumbers,    // descriptions of run-time errors
};
inline constexpr int kMessageGroups = 7;

struct MessageGuide {
  MessageGroup group;
  std::string_view text;  // with "…" for names, numbers and further messages
  std::string_view cause;
  std::string_view remedy;
  std::int32_t number = 0;  // that comes with it; 0 for various ones
};

std::span<const MessageGuide> AllMessageGuides();
std::string_view GroupTitle(MessageGroup group);

// The guide for a message as it is shown, or null. The one with the most text of its own wins.
const MessageGuide* FindMessageGuide(std::string_view message);
// Those whose messages hold this text, without regard to case.
std::vector<const MessageGuide*> SearchMessageGuides(std::string_view part);
// Those that come with this number; `number` may also be one as automation clients see it.
std::vector<const MessageGuide*> MessageGuidesOf(std::int32_t number);

// A name that is a guide's own wherever it is linked to.
std::string AnchorOf(const MessageGuide& guide);
// The number as people write it: decimal, and hexadecimal for the component's own.
std::string NumberText(std::int32_t number);

}  // namespace tessary
