// Lua 5.4 and LuaJIT: one program text, compiled against either.

#include <lua.hpp>

#include <memory>

#include "benchmarks/contestant.h"

namespace {

using namespace bench;

class Machine {
  public:
    Machine() : m_state(luaL_newstate()) { luaL_openlibs(m_state.get()); }

    void bind(const std::string& name, double value) {
        lua_pushnumber(m_state.get(), value);
        lua_setglobal(m_state.get(), name.c_str());
    }
    void bind(const std::string& name, const std::string& value) {
        lua_pushlstring(m_state.get(), value.data(), value.size());
        lua_setglobal(m_state.get(), name.c_str());
    }

    // Loads "return" and the text, calls it, and leaves its result on the stack.
    void call(const std::string& text) {
        m_chunk.assign("return ").append(text);
        luaL_loadbuffer(m_state.get(), m_chunk.data(), m_chunk.size(), "=");
        lua_pcall(m_state.get(), 0, 1, 0);
    }
    double take_number() {
        const double number = lua_tonumber(m_state.get(), -1);
        lua_pop(m_state.get(), 1);
        return number;
    }
    double take_length() {
        std::size_t length = 0;
        lua_tolstring(m_state.get(), -1, &length);
        lua_pop(m_state.get(), 1);
        return static_cast<double>(length);
    }

    int keep_function() { return luaL_ref(m_state.get(), LUA_REGISTRYINDEX); }
    double call_kept(int function, const std::vector<double>& values) {
        lua_rawgeti(m_state.get(), LUA_REGISTRYINDEX, function);
        lua_checkstack(m_state.get(), static_cast<int>(values.size()));
        for (const double value : values) lua_pushnumber(m_state.get(), value);
        lua_call(m_state.get(), static_cast<int>(values.size()), 1);
        return take_number();
    }

    double bound(const Formula& formula, const std::vector<double>& values) {
        for (std::size_t i = 0; i < values.size(); ++i) bind(formula.names[i], values[i]);
        call(formula.lua);
        return take_number();
    }

  private:
    struct Close {
        void operator()(lua_State* state) const { lua_close(state); }
    };
    std::unique_ptr<lua_State, Close> m_state;
    std::string m_chunk;
};

class LuaContestant final : public Contestant {
  public:
    double one_shot(const Formula& formula, const std::vector<double>& values) override {
        return m_machine.bound(formula, values);
    }
    double one_shot_new(const Formula& formula, const std::vector<double>& values) override {
        Machine machine;
        return machine.bound(formula, values);
    }

    void prepare(const std::vector<Formula>& formulas) override {
        m_prepared.clear();
        for (const Formula& formula : formulas) {
            std::string names;
            for (const std::string& name : formula.names)
                names += (names.empty() ? "" : ",") + name;
            m_machine.call("function(" + names + ") return " + formula.lua + " end");
            m_prepared.push_back(m_machine.keep_function());
        }
    }
    double repeated(std::size_t index, const std::vector<double>& values) override {
        return m_machine.call_kept(m_prepared[index], values);
    }

    bool has_texts() const override { return true; }
    double text_one_shot(const TextFormula& formula, const std::string& s,
                         const std::string& t) override {
        m_machine.bind("s", s);
        m_machine.bind("t", t);
        m_machine.call(formula.lua);
        return formula.gives_text ? m_machine.take_length() : m_machine.take_number();
    }

    double batch(const std::vector<Definition>& definitions) override {
        double value = 0.0;
        for (const Definition& definition : definitions) {
            m_machine.call(definition.formula.lua);
            value = m_machine.take_number();
            m_machine.bind(definition.name, value);
        }
        return value;
    }

  private:
    Machine m_machine;
    std::vector<int> m_prepared;
};

}  // namespace

bench::Contestant& bench::contestant() {
    static LuaContestant one;
    return one;
}
