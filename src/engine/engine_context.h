#pragma once

#include <cstdint>

#include "engine/error_collection.h"
#include "engine/ref.h"
#include "engine/text_pool.h"
#include "platform/message_loop.h"

namespace tessary {

class ConversionObserver;
class ElementTable;
class EngineContext;
class Level;

// Creates the level object of a class number, 0 to 9.
using LevelFactory = Ref<Level> (*)(const Ref<EngineContext>& context, int number);

// What the level objects of one piece of work share: the texts, the error collection, the message
// loop and the way to create further levels. Level objects of different contexts must not be mixed.
class EngineContext : public RefCounted {
 public:
  // `errors` and `loop` must outlive the context; `loop` may be null.
  EngineContext(SharedErrors& errors, MessageLoop* loop, LevelFactory create_level)
      : errors_(errors), loop_(loop), create_level_(create_level) {}

  const Ref<TextPool>& pool() const { return pool_; }
  SharedErrors& errors() const { return errors_; }
  void Yield() const {
    if (loop_) loop_->Yield();
  }
  // Who hears of the differences that are applied, or null; must outlive the work.
  void SetObserver(ConversionObserver* observer) { observer_ = observer; }
  ConversionObserver* observer() const { return observer_; }
  Ref<Level> CreateLevel(int number);
  // The child level of a row, which comes into being here where it was only noted so far.
  Ref<Level> ChildOf(ElementTable& array, std::int32_t row);

 private:
  Ref<TextPool> pool_ = MakeRef<TextPool>();
  SharedErrors& errors_;
  MessageLoop* loop_;
  LevelFactory create_level_;
  ConversionObserver* observer_ = nullptr;
};

}  // namespace tessary
