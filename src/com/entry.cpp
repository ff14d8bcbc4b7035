#include "com/entry.h"

#include <algorithm>
#include <iterator>
#include <new>

#include "vndoc6/automation/error.h"

namespace vndoc6::com {
namespace {

using automation::ArgumentError;
using automation::BindingError;
using automation::Error;

// The facility that automation errors are numbered in.
constexpr uint32_t kAutomationFacility = 0x800A0000;

struct CodePair {
  HRESULT code;
  int32_t number;
};

// Both ways: what a call that did not reach its member answers, and what such an answer of a
// foreign object means. DISP_E_EXCEPTION is none of them: whoever answers it has filled in an
// EXCEPINFO, which ReportException alone does.
constexpr CodePair kBindingCodes[] = {
    {DISP_E_MEMBERNOTFOUND, automation::kNotSupported},
    {DISP_E_TYPEMISMATCH, automation::kTypeMismatch},
    {DISP_E_OVERFLOW, automation::kOverflow},
    {DISP_E_BADPARAMCOUNT, automation::kWrongArgumentCount},
    {DISP_E_PARAMNOTOPTIONAL, automation::kArgumentNotOptional},
    {DISP_E_PARAMNOTFOUND, automation::kNamedArgumentNotFound},
    // From here on foreign answers only.
    {DISP_E_UNKNOWNNAME, automation::kNotSupported},
    {E_NOTIMPL, automation::kNotSupported},
    {E_INVALIDARG, automation::kInvalidCall},
    {E_OUTOFMEMORY, automation::kOutOfMemory},
    {REGDB_E_CLASSNOTREG, automation::kCannotCreateObject},
};

// S_OK for an error that says nothing about a call's binding.
HRESULT BindingCode(int32_t number) {
  const auto* found = std::find_if(std::begin(kBindingCodes), std::end(kBindingCodes),
                                   [&](const CodePair& pair) { return pair.number == number; });
  return found != std::end(kBindingCodes) ? found->code : S_OK;
}

// An error of a foreign object may carry any HRESULT as its number; it goes on as it came.
HRESULT Scode(int32_t number) {
  const bool customary = number >= 0 && number <= 0xFFFF;
  return static_cast<HRESULT>(customary ? kAutomationFacility + static_cast<uint32_t>(number)
                                        : static_cast<uint32_t>(number));
}

int32_t ErrorNumber(HRESULT code) {
  const auto bits = static_cast<uint32_t>(code);
  if ((bits & 0xFFFF0000) == kAutomationFacility) return static_cast<int32_t>(bits & 0xFFFF);
  const auto* found = std::find_if(std::begin(kBindingCodes), std::end(kBindingCodes),
                                   [&](const CodePair& pair) { return pair.code == code; });
  return found != std::end(kBindingCodes) ? found->number : static_cast<int32_t>(code);
}

Fault FaultOf(const Error& error) {
  Fault fault;
  fault.scode = Scode(error.number());
  *fault.description.Receive() = TryMakeBstr(error.description());
  *fault.source.Receive() = TryMakeBstr(error.source());
  return fault;
}

Fault OutOfMemory() {
  Fault fault;
  fault.scode = Scode(automation::kOutOfMemory);
  *fault.description.Receive() = TryMakeBstr(u"Out of memory.");
  return fault;
}

}  // namespace

Fault CaughtFault() noexcept {
  try {
    throw;
  } catch (const ArgumentError& error) {
    Fault fault = FaultOf(error);
    fault.binding = BindingCode(error.number());
    fault.argument = error.index();
    return fault;
  } catch (const BindingError& error) {
    Fault fault = FaultOf(error);
    fault.binding = BindingCode(error.number());
    return fault;
  } catch (const Error& error) {
    return FaultOf(error);
  } catch (const std::bad_alloc&) {
    return OutOfMemory();
  } catch (const std::exception& error) {
    Fault fault;
    *fault.description.Receive() = TryMakeBstr(automation::FromUtf8(error.what()));
    return fault;
  }
}

HRESULT SetErrorObject(Fault fault, REFIID iid) noexcept {
  ComPtr<ICreateErrorInfo> info;
  if (SUCCEEDED(CreateErrorInfo(info.Receive()))) {
    info->SetGUID(iid);
    info->SetDescription(fault.description.get());
    info->SetSource(fault.source.get());
  }
  // Null when there is no memory for one: the last call's error would be taken for this one's.
  SetErrorInfo(0, info.As<IErrorInfo>().get());
  return fault.scode;
}

HRESULT ReportException(Fault fault, EXCEPINFO* exception) noexcept {
  if (exception != nullptr) {
    *exception = {};
    exception->scode = fault.scode;
    exception->bstrDescription = fault.description.Detach();
    exception->bstrSource = fault.source.Detach();
  }
  return DISP_E_EXCEPTION;
}

HRESULT ReportErrorObject(HRESULT scode, EXCEPINFO* exception) noexcept {
  Fault fault;
  fault.scode = scode;
  ComPtr<IErrorInfo> info;
  if (GetErrorInfo(0, info.Receive()) == S_OK) {
    info->GetDescription(fault.description.Receive());
    info->GetSource(fault.source.Receive());
  }
  return ReportException(std::move(fault), exception);
}

void RaiseFailure(HRESULT code, EXCEPINFO* exception) {
  if (code == E_OUTOFMEMORY) throw std::bad_alloc();
  if (code != DISP_E_EXCEPTION || exception == nullptr) throw Error(ErrorNumber(code));
  if (exception->pfnDeferredFillIn != nullptr) exception->pfnDeferredFillIn(exception);
  OwnedBstr description, source, help_file;
  *description.Receive() = exception->bstrDescription;
  *source.Receive() = exception->bstrSource;
  *help_file.Receive() = exception->bstrHelpFile;
  const int32_t number = exception->wCode != 0 ? exception->wCode : ErrorNumber(exception->scode);
  throw Error(number, Text(description.text()), Text(source.text()));
}

}  // namespace vndoc6::com
