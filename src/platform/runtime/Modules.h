// The program's modules: libraries of its own, NAME.so, that bring in another one when it is first needed.
#pragma once

namespace pixmora {

/// Loads the module, for the program's life. @param name without its ending @param symbol its one symbol
/// @return null where the module is not installed
void *LoadModule(const char *name, const char *symbol);

}  // namespace pixmora
