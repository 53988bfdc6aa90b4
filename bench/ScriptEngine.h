// A scripting language beside which the product is measured.
#pragma once

#include <memory>
#include <string>

/// One state of an interpreter of Lua. There are two of them, with the same names of functions in
/// their libraries, so each is a module of its own that shows only how to make this.
class ScriptEngine {
public:
    ScriptEngine() = default;
    ScriptEngine(const ScriptEngine&) = delete;
    ScriptEngine& operator=(const ScriptEngine&) = delete;
    virtual ~ScriptEngine() = default;

    /// Compiles a chunk and drops it; throws std::runtime_error where it has an error.
    virtual void load(const std::string& chunk) = 0;
};

/// What a module exports, under the name makeScriptEngine.
using MakeScriptEngine = ScriptEngine*();

/// Loads the module of a path, which stays loaded, and makes an engine. Throws std::runtime_error.
std::unique_ptr<ScriptEngine> openScriptEngine(const char* path);
