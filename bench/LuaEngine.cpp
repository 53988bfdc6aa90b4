// The one engine, compiled once for each implementation of the language.
#include <lua.hpp>
#include <stdexcept>

#include "ScriptEngine.h"

namespace {

/// Holds a state with the standard library; kept values are in the registry.
class LuaEngine final : public ScriptEngine {
public:
    LuaEngine() : state_(luaL_newstate()) { luaL_openlibs(state_); }
    LuaEngine(const LuaEngine&) = delete;
    LuaEngine& operator=(const LuaEngine&) = delete;
    ~LuaEngine() override { lua_close(state_); }

    void load(const std::string& chunk) override {
        push(chunk);
        lua_pop(state_, 1);
    }

    void run(const std::string& chunk) override {
        push(chunk);
        check(lua_pcall(state_, 0, 0, 0));
    }

    void collectGarbage() override { lua_gc(state_, LUA_GCCOLLECT, 0); }

    int keep(const std::string& expression) override {
        push("return " + expression);
        check(lua_pcall(state_, 0, 1, 0));
        return luaL_ref(state_, LUA_REGISTRYINDEX);
    }

    std::size_t call(int function) override {
        get(function);
        check(lua_pcall(state_, 0, 1, 0));
        const std::size_t size = lua_istable(state_, -1) ? length() : 1;
        lua_pop(state_, 1);
        return size;
    }

    bool test(int function, int argument) override {
        get(function);
        get(argument);
        check(lua_pcall(state_, 1, 1, 0));
        const bool result = lua_toboolean(state_, -1) != 0;
        lua_pop(state_, 1);
        return result;
    }

    std::string callForText(int function) override {
        get(function);
        check(lua_pcall(state_, 0, 1, 0));
        std::size_t size = 0;
        const char* const bytes = lua_tolstring(state_, -1, &size);
        std::string result(bytes, size);
        lua_pop(state_, 1);
        return result;
    }

private:
    void push(const std::string& chunk) {
        check(luaL_loadbuffer(state_, chunk.data(), chunk.size(), "=chunk"));
    }

    void get(int kept) { lua_rawgeti(state_, LUA_REGISTRYINDEX, kept); }

    std::size_t length() {
#if LUA_VERSION_NUM >= 502
        return lua_rawlen(state_, -1);
#else
        return lua_objlen(state_, -1);
#endif
    }

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
