#pragma once

#include <cstdint>
#include <vector>

#include "engine/element_table.h"
#include "engine/error_collection.h"
#include "engine/ref.h"
#include "engine/text_pool.h"
#include "platform/failure.h"
#include "platform/message_loop.h"

namespace tessary {

class ConversionObserver;
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
  // Takes over an array that nobody else holds as a rule, and lets go of it. Arrays that go with it
  // wait for their turn instead of nesting calls as deep as levels are nested.
  void Bury(Ref<ElementTable> array) noexcept;
  // The child level of a row, which comes into being here where it was only noted so far, and reads
  // the row's unread lines.
  Ref<Level> ChildOf(ElementTable& array, std::int32_t row);
  Ref<Level> ChildOf(Element& element);
  // The elements inside an element, none where its child level has not been used; a level that
  // reads unread lines for that is not kept.
  Ref<ElementTable> ContentsOf(const Element& element);

 private:
  friend class Descent;
  static constexpr int kDeepest = 200;  // reports have ten levels

  Ref<Level> NewChild(const Element& element);

  Ref<TextPool> pool_ = MakeRef<TextPool>();
  SharedErrors& errors_;
  MessageLoop* loop_;
  LevelFactory create_level_;
  ConversionObserver* observer_ = nullptr;
  int depth_ = 0;
  std::vector<Ref<ElementTable>> buried_;
  bool burying_ = false;
};

// One step down of a member that calls itself for the levels below. Raises Failure 28 where
// levels are nested deeper than the stack may take, or without end.
class Descent {
 public:
  explicit Descent(EngineContext& context) : context_(context) {
    if (context_.depth_ == EngineContext::kDeepest) throw Failure(kOutOfStack);
    ++context_.depth_;
  }
  ~Descent() { --context_.depth_; }
  Descent(const Descent&) = delete;
  Descent& operator=(const Descent&) = delete;

 private:
  EngineContext& context_;
};

}  // namespace tessary
