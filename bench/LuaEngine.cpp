// The one engine, compiled once for each implementation of the language.
#include <lua.hpp>
#include <stdexcept>

#include "ScriptEngine.h"

namespace {

/// Holds a state with the standard library.
class LuaEngine final : public ScriptEngine {
public:
    LuaEngine() : state_(luaL_newstate()) { luaL_openlibs(state_); }
    LuaEngine(const LuaEngine&) = delete;
    LuaEngine& operator=(const LuaEngine&) = delete;
    ~LuaEngine() override { lua_close(state_); }

    void load(const std::string& chunk) override {
        check(luaL_loadbuffer(state_, chunk.data(), chunk.size(), "=chunk"));
        lua_pop(state_, 1);
    }

private:
    void check(int status) {
        if (status != 0) {
            const std::string message = lua_tostring(state_, -1);
            lua_pop(state_, 1);
            throw std::runtime_error(message);
        }
    }

    lua_State* state_;
};

}  // namespace

extern "C" __attribute__((visibility("default"))) ScriptEngine* makeScriptEngine() {
    return new LuaEngine;
}
