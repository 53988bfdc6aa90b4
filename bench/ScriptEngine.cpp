#include "ScriptEngine.h"

#include <dlfcn.h>

#include <stdexcept>

std::unique_ptr<ScriptEngine> openScriptEngine(const char* path) {
    void* const module = dlopen(path, RTLD_NOW | RTLD_LOCAL);
    void* const make = module != nullptr ? dlsym(module, "makeScriptEngine") : nullptr;
    if (make == nullptr) {
        throw std::runtime_error(dlerror());
    }
    return std::unique_ptr<ScriptEngine>(reinterpret_cast<MakeScriptEngine*>(make)());
}
