// ScriptFunctions: global functions of scripts that live as long as whoever gives them.
#pragma once

#include "ostrelhook/globalfunction.h"

#include <vector>

namespace Ostrel::Host {

/// Adds functions to the framework's global class and takes them away again at its end.
class ScriptFunctions
{
public:
    ScriptFunctions() = default;
    ~ScriptFunctions()
    {
        for (const GlobalMethod *method : m_methods)
            Inspector::self()->globalClass()->removeMethod(method);
    }
    Q_DISABLE_COPY_MOVE(ScriptFunctions)

    template <typename Function>
    void add(const char *name, std::initializer_list<const char *> parameters, Function function)
    {
        m_methods.push_back(addGlobalFunction(name, parameters, std::move(function)));
    }

    void add(std::unique_ptr<GlobalMethod> method)
    {
        m_methods.push_back(Inspector::self()->globalClass()->addMethod(std::move(method)));
    }

private:
    std::vector<const GlobalMethod *> m_methods;
};

} // namespace Ostrel::Host
