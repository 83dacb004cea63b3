#include "ui/progress_model.h"

namespace tessary {

void ProgressModel::Init(std::string_view strCaptionBold, std::string_view strCaptionNormal) {
  caption_bold_ = strCaptionBold;
  caption_normal_ = strCaptionNormal;
}

void ProgressModel::Process(std::string_view strProcess) {
  process_ = std::string(strProcess) + " ...";
}

void ProgressModel::Tick() {
  if (value_ < maximum_) {
    ++value_;
  } else if (value_ == maximum_) {
    value_ = minimum_;
  }
}

}  // namespace tessary
