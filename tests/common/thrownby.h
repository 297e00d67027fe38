// Which exception of the family an action throws, and where.
#pragma once

#include <string>

#include <tvutil/exceptions.h>
#include <tvutil/tavlenexception.h>

// "Class Method line"; empty when nothing is thrown. `file` receives the file that it names.
template <class Action>
std::string ThrownBy(Action action, std::string* file = nullptr)
{
    try
    {
        action();
        return {};
    }
    catch (const TavlenException& exception)
    {
        if (file != nullptr)
            *file = CXString(exception.GetSite().file).ToUtf8();
        return CXString(exception.GetClassName()).ToUtf8() + " " + CXString(exception.GetSite().method).ToUtf8() + " " +
               std::to_string(exception.GetSite().line);
    }
}
