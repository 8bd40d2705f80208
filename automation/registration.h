// Writes and removes what COM finds the module's classes by.

#pragma once

#include <windows.h>

namespace morandel::automation {

// For every user, or for the one that runs it, who then needs no rights of an administrator.
enum class Scope { machine, user };

// Each gives the first failure. A registration that fails leaves nothing behind; a removal goes on
// after a failure.
HRESULT register_server(Scope scope);
HRESULT unregister_server(Scope scope);

}  // namespace morandel::automation
