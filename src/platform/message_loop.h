#pragma once

namespace tessary {

// Where long loops let the window system take a turn.
class MessageLoop {
 public:
  virtual ~MessageLoop() = default;
  // Called once per row or line of every long loop; must be cheap.
  virtual void Yield() = 0;
};

}  // namespace tessary
