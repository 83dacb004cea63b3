#pragma once

#include <string>
#include <vector>

#include "engine/element_table.h"
#include "engine/engine_context.h"
#include "levels/level_factory.h"
#include "levels/section_reader.h"

namespace tessary {

// A context of the ten level classes with an error collection of its own. The context may outlive
// this object only if nothing fails any more.
struct TestEngine {
  SharedErrors errors;
  Ref<EngineContext> context = NewEngineContext(errors, nullptr);

  Ref<Level> NewLevel(int number) const { return context->CreateLevel(number); }
};

// The elements inside an element, null for none; what is unread is read apart from the tree.
Ref<ElementTable> ContentsOf(const Element& element);

// The tree of a file's lines; lines of blanks are dropped as in reading a file.
Ref<ElementTable> ReadLines(const Ref<EngineContext>& context,
                            const std::vector<std::string>& lines);

// The same tree, read as a file at a time: contents of sections are left unread until they are
// asked for.
Ref<ElementTable> ReadFileOfLines(const Ref<EngineContext>& context,
                                  const std::vector<std::string>& lines);

// The same, where the topmost sections of another release of the file are known, or none;
// `sections` becomes those of this one.
Ref<ElementTable> ReadReleaseOfLines(const Ref<EngineContext>& context,
                                     const std::vector<std::string>& lines, FileSections& sections);

// The lines that a tree is written as; renumbers in the tree.
std::vector<std::string> WriteLines(const Ref<EngineContext>& context,
                                    const Ref<ElementTable>& tree);

// The same lines, taken in blocks.
std::vector<std::string> WriteBlocks(const Ref<EngineContext>& context,
                                     const Ref<ElementTable>& tree);

// A tree as text. Every row gives one line,
//   <indent><status> name|key|typ|prevname|prevkey|prevtyp|nextname|nextkey|nexttyp|posnr|value
// and below it the rows of its child: indent is two blanks per depth, status one of D, N, U and -.
std::string Dump(const Ref<ElementTable>& tree);

}  // namespace tessary
