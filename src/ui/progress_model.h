#pragma once

#include <string>
#include <string_view>

namespace tessary {

// What the progress window shows: two title lines, the step at which the work is, and a bar that
// does not measure anything but goes round as long as the work lasts.
class ProgressModel {
 public:
  static constexpr std::string_view kWindowCaption = "Bitte warten ...";
  static constexpr int kTickMilliseconds = 25;

  // Replaces the two title lines.
  void Init(std::string_view strCaptionBold, std::string_view strCaptionNormal);
  // Names the step that begins now.
  void Process(std::string_view strProcess);
  // One step of the bar, from its end back to its beginning.
  void Tick();
  // Fills the bar.
  void StopProgress() { value_ = maximum_; }

  const std::string& caption_bold() const { return caption_bold_; }
  const std::string& caption_normal() const { return caption_normal_; }
  const std::string& process() const { return process_; }
  int minimum() const { return minimum_; }
  int maximum() const { return maximum_; }
  int value() const { return value_; }
  // Any value is taken, also one outside the range.
  void set_value(int value) { value_ = value; }

 private:
  std::string caption_bold_ = "Berichtskonvertierung";
  std::string caption_normal_ = "List & Label";
  std::string process_;
  int minimum_ = 0;
  int maximum_ = 100;
  int value_ = 0;
};

}  // namespace tessary
