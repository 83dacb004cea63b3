#include "levels/level_factory.h"

#include "levels/level0.h"
#include "levels/level1.h"
#include "levels/level2.h"
#include "levels/level3.h"
#include "levels/level4.h"
#include "levels/level5.h"
#include "levels/level6.h"
#include "levels/level7.h"
#include "levels/level8.h"
#include "levels/level9.h"
#include "platform/failure.h"

namespace tessary {
namespace {

template <class BXLevel>
Ref<Level> New(const Ref<EngineContext>& context) {
  return MakeRef<BXLevel>(context);
}

constexpr Ref<Level> (*kConstructors[])(const Ref<EngineContext>&) = {
    New<BXLevel0>, New<BXLevel1>, New<BXLevel2>, New<BXLevel3>, New<BXLevel4>,
    New<BXLevel5>, New<BXLevel6>, New<BXLevel7>, New<BXLevel8>, New<BXLevel9>};

}  // namespace

Ref<Level> CreateLevel(const Ref<EngineContext>& context, int number) {
  if (number < 0 || number >= static_cast<int>(std::size(kConstructors))) {
    throw Failure(kCannotCreateObject);
  }
  return kConstructors[number](context);
}

Ref<EngineContext> NewEngineContext(SharedErrors& errors, MessageLoop* loop) {
  return MakeRef<EngineContext>(errors, loop, &CreateLevel);
}

}  // namespace tessary
