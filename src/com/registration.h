#pragma once

namespace tessary::com {

enum class RegistrationScope { kMachine, kCurrentUser };

// Enters the DLL's classes, at the place where it lies now, and its type library, or takes them
// out again. Unregistering removes everything that registering wrote and does not fail for what
// is not there. Both raise ComError.
void Register(RegistrationScope scope);
void Unregister(RegistrationScope scope);

}  // namespace tessary::com
