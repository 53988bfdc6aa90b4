// A scripting language beside which the product is measured.
#pragma once

#include <cstddef>
#include <memory>
#include <string>

/// One state of an interpreter of Lua. There are two of them, with the same names of functions in
/// their libraries, so each is a module of its own that shows only how to make this.
///
/// All operations throw std::runtime_error with the interpreter's message where it reports an
/// error.
class ScriptEngine {
public:
    ScriptEngine() = default;
    ScriptEngine(const ScriptEngine&) = delete;
    ScriptEngine& operator=(const ScriptEngine&) = delete;
    virtual ~ScriptEngine() = default;

    /// Compiles a chunk and drops it.
    virtual void load(const std::string& chunk) = 0;
    /// Compiles a chunk and runs it.
    virtual void run(const std::string& chunk) = 0;
    /// Frees what nothing refers to any more.
    virtual void collectGarbage() = 0;

    /// Evaluates an expression, and keeps its value for as long as the engine lives.
    virtual int keep(const std::string& expression) = 0;
    /// Calls a kept function without arguments and returns the size of its result, which is 1 if it
    /// is no list.
    virtual std::size_t call(int function) = 0;
    /// Calls a kept function with a kept value; whether the result is true.
    virtual bool test(int function, int argument) = 0;
    /// Calls a kept function without arguments for a text.
    virtual std::string callForText(int function) = 0;
};

/// What a module exports, under the name makeScriptEngine.
using MakeScriptEngine = ScriptEngine*();

/// Loads the module of a path, which stays loaded, and makes an engine. Throws std::runtime_error.
std::unique_ptr<ScriptEngine> openScriptEngine(const char* path);
