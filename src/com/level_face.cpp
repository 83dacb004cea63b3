#include "com/level_face.h"

#include <array>

#include "com/nesting.h"
#include "com/text.h"
#include "com/variant.h"
#include "com/x_array_db.h"
#include "engine/level_basis.h"

namespace tessary::com {
namespace {

constexpr DISPID kBeforeInsert = 1;

// By this the component knows its own level objects; a proxy does not answer to it.
constexpr IID kOwnLevel = {
    0x4f0d1c53, 0x6a1b, 0x4c39, {0x9b, 0x52, 0x1e, 0x84, 0x70, 0x36, 0xd2, 0x6b}};

#define LEVEL_FACTS(name) \
  { CLSID_##name, IID_IBXLevelBasis, &DIID__IBXLevelBasisEvents, L"Tessary." #name }

const ClassFacts kEngineFacts = LEVEL_FACTS(BXLevelBasis);
const ClassFacts kLevelFacts[] = {
    LEVEL_FACTS(BXLevel0), LEVEL_FACTS(BXLevel1), LEVEL_FACTS(BXLevel2), LEVEL_FACTS(BXLevel3),
    LEVEL_FACTS(BXLevel4), LEVEL_FACTS(BXLevel5), LEVEL_FACTS(BXLevel6), LEVEL_FACTS(BXLevel7),
    LEVEL_FACTS(BXLevel8), LEVEL_FACTS(BXLevel9),
};

#undef LEVEL_FACTS

const ClassFacts& FactsOf(const Level& level) {
  const int number = level.ClassNumber();
  return number == Level::kNoLevelClass ? kEngineFacts : kLevelFacts[number];
}

Ref<Level> MakeLevel(const Ref<EngineContext>& context, int number) {
  if (number != Level::kNoLevelClass) return context->CreateLevel(number);
  auto level = MakeRef<BXLevelBasis>(context);
  level->SetLevelClassName("BXLevelBasis");
  return level;
}

BXStatus CheckedStatus(::bxsBXStatus status) {
  const auto number = static_cast<LONG>(status);
  if (number < ::bxsDelete || number > ::bxsUnknown) throw Failure(kInvalidCall);
  return static_cast<BXStatus>(number);
}

// Replaces a string that a caller passed by reference.
void ReplaceText(std::string_view utf8, BSTR* target) {
  Bstr text(utf8);
  SysFreeString(*target);
  *target = text.Detach();
}

}  // namespace

ComPtr<IDispatch> LevelFace::New(int number) {
  const auto thread = ThreadState::Current();
  const ContextUse use(*thread);
  const Ref<Level> level = MakeLevel(thread->context(), number);
  return ComPtr<IDispatch>::Query(Of(level).get());
}

ComPtr<IBXLevelBasis> LevelFace::Of(const Ref<Level>& level) {
  if (!level) return {};
  IUnknown* known = ThreadState::Current()->FaceOf(level.get());
  if (known) return ComPtr<IBXLevelBasis>::Query(known);
  return ComPtr<IBXLevelBasis>::Share(new LevelFace(level));
}

Ref<Level> LevelFace::LevelOf(ThreadState& thread, IUnknown* object) {
  if (!object) return nullptr;
  void* own = nullptr;
  if (FAILED(object->QueryInterface(kOwnLevel, &own))) throw ComError{DISP_E_TYPEMISMATCH};
  const auto face = ComPtr<LevelFace>::Take(static_cast<LevelFace*>(own));
  if (&face->thread() != &thread) throw ComError{DISP_E_TYPEMISMATCH};
  return face->level_;
}

LevelFace::LevelFace(Ref<Level> level) : Dual(FactsOf(*level)), level_(std::move(level)) {
  thread().SetFace(level_.get(), static_cast<IBXLevelBasis*>(this));
  level_->SetInsertionObserver(this);
}

LevelFace::~LevelFace() {
  level_->SetInsertionObserver(nullptr);
  thread().ForgetFace(level_.get());
}

void* LevelFace::FindMore(REFIID iid) {
  if (iid == IID_IConnectionPointContainer) return static_cast<IConnectionPointContainer*>(this);
  return iid == kOwnLevel ? this : nullptr;
}

Ref<ElementTable> LevelFace::Elements(IXArrayDB* array) const {
  Ref<ElementTable> elements = XArrayDBFace::ElementsOf(thread(), array);
  RequireNoCycle(*level_, elements);
  return elements;
}

Ref<ElementTable> LevelFace::Elements(IXArrayDB** array) const {
  RequirePointer(array);
  return Elements(*array);
}

STDMETHODIMP LevelFace::Add(BSTR strName, ::bxsBXStatus bxsStatus, BSTR strKey, BSTR strTyp,
                            BSTR strPosPrevName, BSTR strPosPrevKey, BSTR strPosPrevTyp,
                            BSTR strPosNextName, BSTR strPosNextKey, BSTR strPosNextTyp,
                            BSTR strPosNr, BSTR strValue, IBXLevelBasis* objLevel,
                            ::bxltBXLineType bxltLineType) {
  return RunInEngine([&] {
    const Ref<Level> child = LevelOf(thread(), objLevel);
    RequireNoCycle(level_.get(), level_->ElementArray(), child);
    level_->Add({ToUtf8(strName), CheckedStatus(bxsStatus), ToUtf8(strKey), ToUtf8(strTyp),
                 ToUtf8(strPosPrevName), ToUtf8(strPosPrevKey), ToUtf8(strPosPrevTyp),
                 ToUtf8(strPosNextName), ToUtf8(strPosNextKey), ToUtf8(strPosNextTyp),
                 ToUtf8(strPosNr), ToUtf8(strValue), child, static_cast<BXLineType>(bxltLineType)});
  });
}

STDMETHODIMP LevelFace::putref_ElementArray(IXArrayDB* aElement) {
  return RunInEngine([&] { level_->SetElementArray(Elements(aElement)); });
}

STDMETHODIMP LevelFace::get_ElementArray(IXArrayDB** ppaElement) {
  return Run([&] {
    RequirePointer(ppaElement);
    *ppaElement = nullptr;
    *ppaElement = XArrayDBFace::Of(level_->ElementArray()).Detach();
  });
}

STDMETHODIMP LevelFace::get_LastElement(IBXLevelBasis** ppobjLevel) {
  return RunInEngine([&] {
    RequirePointer(ppobjLevel);
    *ppobjLevel = nullptr;
    *ppobjLevel = Of(level_->LastElement()).Detach();
  });
}

STDMETHODIMP LevelFace::Compare(IXArrayDB** aOldElement, IXArrayDB** aNewElement) {
  return RunInEngine([&] { level_->Compare(Elements(aOldElement), Elements(aNewElement)); });
}

STDMETHODIMP LevelFace::CompareElements(IXArrayDB** aOldElement, IXArrayDB** aNewElement,
                                        BSTR strCreateObject) {
  return RunInEngine([&] {
    level_->CompareElements(Elements(aOldElement), Elements(aNewElement), ToUtf8(strCreateObject));
  });
}

STDMETHODIMP LevelFace::CheckMissingElements(IXArrayDB** aSource, IXArrayDB** aDest,
                                             ::bxsBXStatus bxsStatus) {
  return RunInEngine([&] {
    level_->CheckMissingElements(Elements(aSource), Elements(aDest), CheckedStatus(bxsStatus));
  });
}

STDMETHODIMP LevelFace::CheckForAddingAllElements(IXArrayDB** aOldElement, IXArrayDB** aNewElement,
                                                  VARIANT_BOOL* pblnResult) {
  return RunInEngine([&] {
    RequirePointer(pblnResult);
    *pblnResult = VARIANT_FALSE;
    const bool done =
        level_->CheckForAddingAllElements(Elements(aOldElement), Elements(aNewElement));
    *pblnResult = done ? VARIANT_TRUE : VARIANT_FALSE;
  });
}

STDMETHODIMP LevelFace::GetFoundFieldValue(BSTR* strFieldOwner, LONG* lngOwnerLevel,
                                           ::bxeaBXElementArray* bxaeField, BSTR* strValue,
                                           VARIANT_BOOL* pblnResult) {
  return RunInEngine([&] {
    for (const void* pointer : {static_cast<void*>(strFieldOwner),
                                static_cast<void*>(lngOwnerLevel), static_cast<void*>(bxaeField),
                                static_cast<void*>(strValue), static_cast<void*>(pblnResult)}) {
      RequirePointer(pointer);
    }
    FoundField field;
    const bool found = level_->GetFoundFieldValue(field);
    const TextPool& pool = *thread().context()->pool();
    ReplaceText(pool.Text(field.owner), strFieldOwner);
    ReplaceText(pool.Text(field.value), strValue);
    *lngOwnerLevel = field.owner_level;
    *bxaeField = static_cast<::bxeaBXElementArray>(field.field);
    *pblnResult = found ? VARIANT_TRUE : VARIANT_FALSE;
  });
}

STDMETHODIMP LevelFace::PrepareWriting(IXArrayDB** aWrite, LONG lngLevel) {
  return RunInEngine([&] {
    RequirePointer(aWrite);
    Ref<WriteTable> lines = XArrayDBFace::LinesOf(thread(), *aWrite);
    level_->PrepareWriting(lines, lngLevel);
    if (!*aWrite) *aWrite = XArrayDBFace::Of(lines).Detach();
  });
}

STDMETHODIMP LevelFace::Convert(IXArrayDB* aReport, IXArrayDB* aDiffFile) {
  return RunInEngine([&] { level_->Convert(Elements(aReport), Elements(aDiffFile)); });
}

STDMETHODIMP LevelFace::EnumConnectionPoints(IEnumConnectionPoints** points) {
  return Run([&] {
    RequirePointer(points);
    *points = EnumerateConnectionPoint(before_insert_).Detach();
  });
}

STDMETHODIMP LevelFace::FindConnectionPoint(REFIID iid, IConnectionPoint** point) {
  return Run([&] {
    RequirePointer(point);
    *point = nullptr;
    if (iid != DIID__IBXLevelBasisEvents) throw ComError{CONNECT_E_NOCONNECTION};
    *point = ComPtr<IConnectionPoint>::Share(&before_insert_).Detach();
  });
}

// Tells every sink of an insertion: the element's columns without the status. What a sink answers
// changes nothing, and what it reports on the way stays out of the entries being collected.
void LevelFace::BeforeInsert(const Element& element) {
  if (!before_insert_.HasSinks()) return;
  const auto self = ComPtr<IBXLevelBasis>::Share(this);
  const TextPool& pool = *thread().context()->pool();
  std::array<Variant, bxeaElement> columns;
  for (int column = bxeaName; column <= bxeaPosNr; ++column) {
    const std::string_view text = pool.Text(element.key[static_cast<BXElementArray>(column)]);
    columns[static_cast<std::size_t>(column) - 1] = Variant::Text(Bstr(text));
  }
  columns[bxeaValue - 1] = Variant::Text(Bstr(element.value()));
  columns[bxeaElement - 1] = Variant::Object(Of(element.child).Detach());
  std::array<VARIANTARG, bxeaElement> arguments;
  for (std::size_t at = 0; at < columns.size(); ++at) {
    arguments[columns.size() - 1 - at] = columns[at].get();
  }
  DISPPARAMS parameters{arguments.data(), nullptr, static_cast<UINT>(arguments.size()), 0};
  const ErrorsAside aside(thread());
  for (const ComPtr<IDispatch>& sink : before_insert_.Sinks()) {
    sink->Invoke(kBeforeInsert, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &parameters,
                 nullptr, nullptr, nullptr);
  }
}

}  // namespace tessary::com
