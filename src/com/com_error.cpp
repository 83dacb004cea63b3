// Where exceptions become results. A run-time error keeps its number, so that a caller sees
// Err.Number 9 or 91; the component's own numbers are results already.

#include "com/com_error.h"

#include <exception>
#include <new>
#include <string>

#include "com/com_ptr.h"
#include "platform/failure.h"
#include "platform/windows/wide_text.h"

namespace tessary::com {
namespace {

constexpr std::int32_t kLargestRunTimeError = 0xFFFF;

HRESULT ResultOf(const Failure& failure) {
  const std::int32_t number = failure.number();
  if (number < 0) return static_cast<HRESULT>(number);
  if (number == 0 || number > kLargestRunTimeError) return E_FAIL;
  return MAKE_HRESULT(SEVERITY_ERROR, FACILITY_CONTROL, number);
}

const char* TextOf(HRESULT result) {
  switch (result) {
    case E_POINTER:
      return "Ungültiger Zeiger";
    case E_OUTOFMEMORY:
      return RunTimeErrorText(kOutOfMemory);
    case DISP_E_TYPEMISMATCH:
      return RunTimeErrorText(kTypeMismatch);
    case DISP_E_OVERFLOW:
      return RunTimeErrorText(kOverflow);
    case RPC_E_WRONG_THREAD:
      return "Das Objekt gehört einem anderen Thread";
    default:
      return RunTimeErrorText(0);
  }
}

void LeaveErrorInfo(const ErrorOrigin& origin, std::string_view text) noexcept {
  try {
    ComPtr<ICreateErrorInfo> info;
    Check(CreateErrorInfo(info.Put()));
    std::wstring source = origin.source;
    std::wstring description = WideFromUtf8(text);
    info->SetGUID(origin.interface_id);
    info->SetSource(source.data());
    info->SetDescription(description.data());
    SetErrorInfo(0, ComPtr<IErrorInfo>::Query(info.get()).get());
  } catch (...) {
    SetErrorInfo(0, nullptr);
  }
}

HRESULT Report(const ErrorOrigin& origin, HRESULT result) {
  LeaveErrorInfo(origin, TextOf(result));
  return result;
}

}  // namespace

HRESULT ReportException(const ErrorOrigin& origin) noexcept {
  try {
    throw;
  } catch (const Failure& failure) {
    LeaveErrorInfo(origin, failure.description());
    return ResultOf(failure);
  } catch (const ComError& error) {
    return Report(origin, error.result);
  } catch (const std::bad_alloc&) {
    return Report(origin, E_OUTOFMEMORY);
  } catch (...) {
    return Report(origin, E_UNEXPECTED);
  }
}

}  // namespace tessary::com
