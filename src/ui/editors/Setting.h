// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <type_traits>

/// One value that a control shows and changes. A value: two functions that reach what is edited,
/// which outlives the control.
template <class Value>
struct Setting
{
    std::function<Value()> get;
    std::function<void(const Value &)> set;
};

/// The setting behind a getter and a setter.
template <class Object, class Result, class Argument>
Setting<std::decay_t<Result>> settingOf(Object &object, Result (Object::*get)() const,
                                        void (Object::*set)(Argument))
{
    return {[&object, get] { return (object.*get)(); },
            [&object, set](const std::decay_t<Result> &value) { (object.*set)(value); }};
}

/// An integer that counts as on when it is not 0; switching writes 1 or 0.
template <class Object, class Result, class Argument>
Setting<bool> switchOf(Object &object, Result (Object::*get)() const, void (Object::*set)(Argument))
{
    return {[&object, get] { return (object.*get)() != 0; },
            [&object, set](bool isOn) { (object.*set)(isOn ? 1 : 0); }};
}

/// The same as a choice of two: 0 and 1, where 1 stands for everything that is not 0.
template <class Object, class Result, class Argument>
Setting<std::decay_t<Result>> eitherOf(Object &object, Result (Object::*get)() const,
                                       void (Object::*set)(Argument))
{
    using Value = std::decay_t<Result>;
    return {[&object, get] { return (object.*get)() != 0 ? Value{1} : Value{0}; },
            [&object, set](const Value &value) { (object.*set)(value); }};
}
