#include "complugins/ptpcprovider/printticketquerybuilder.h"

#include <tvutil/tavlencomexception.h>

#include <new>
#include <utility>

namespace
{

constexpr WCHAR kSourceFile[] = W("complugins\\ptpcprovider\\printticketquerybuilder");

// In each fragment the first %s is the framework prefix and the second the full name.
constexpr WStringView kFeature = W("//%sFeature[@name = \"%s\"]");
constexpr WStringView kProperty = W("//%sProperty[@name = \"%s\"]");
constexpr WStringView kScoredProperty = W("//%sScoredProperty[@name = \"%s\"]");
constexpr WStringView kParameterDef = W("//%sParameterDef[@name = \"%s\"]");
constexpr WStringView kParameterInit = W("//%sParameterInit[@name = \"%s\"]");
constexpr WStringView kChildOptionName = W("/%sOption[@name = \"%s\"]");
constexpr WStringView kChildProperty = W("/%sProperty[@name = \"%s\"]");

constexpr WStringView kOption = W("/%sOption");
constexpr WStringView kValue = W("/%sValue");
constexpr WStringView kUnion = W(" | ");
constexpr WStringView kOptionNameValue = W("/%sScoredProperty[@name = \"%sOptionName\"]/%sValue");

// Running out of memory has its HRESULT here, as every other failure.
template <class Step>
void OrOutOfMemory(const WCHAR* method, Step&& step, int line = __builtin_LINE())
{
    try
    {
        std::forward<Step>(step)();
    }
    catch (const std::bad_alloc&)
    {
        ThrowComException(E_OUTOFMEMORY, {method, kSourceFile, line});
    }
}

} // namespace

PrintTicketQueryBuilder::PrintTicketQueryBuilder(const CXString& frameworkPrefix, Start start)
    : m_query(start == Start::ContextNode ? W(".") : W("")), m_frameworkPrefix(frameworkPrefix)
{
}

void PrintTicketQueryBuilder::AddFeature(const CXString& namePrefix, const CXString& localName)
{
    AddNamed(kFeature, namePrefix, localName, W("PrintTicketQueryBuilder::AddFeature"));
}

void PrintTicketQueryBuilder::AddProperty(const CXString& namePrefix, const CXString& localName)
{
    AddNamed(kProperty, namePrefix, localName, W("PrintTicketQueryBuilder::AddProperty"));
}

void PrintTicketQueryBuilder::AddScoredProperty(const CXString& namePrefix, const CXString& localName)
{
    AddNamed(kScoredProperty, namePrefix, localName, W("PrintTicketQueryBuilder::AddScoredProperty"));
}

void PrintTicketQueryBuilder::AddParameterDef(const CXString& namePrefix, const CXString& localName)
{
    AddNamed(kParameterDef, namePrefix, localName, W("PrintTicketQueryBuilder::AddParameterDef"));
}

void PrintTicketQueryBuilder::AddParameterInit(const CXString& namePrefix, const CXString& localName)
{
    AddNamed(kParameterInit, namePrefix, localName, W("PrintTicketQueryBuilder::AddParameterInit"));
}

void PrintTicketQueryBuilder::AddChildPropertyValue(const CXString& namePrefix, const CXString& localName)
{
    AddNamed(kChildProperty, namePrefix, localName, W("PrintTicketQueryBuilder::AddChildPropertyValue"), kValue);
}

void PrintTicketQueryBuilder::AddChildOptionName(const CXString& namePrefix, const CXString& localName)
{
    AddNamed(kChildOptionName, namePrefix, localName, W("PrintTicketQueryBuilder::AddChildOptionName"));
}

void PrintTicketQueryBuilder::AddValue()
{
    constexpr const WCHAR* kMethod = W("PrintTicketQueryBuilder::AddValue");
    RequireFrameworkPrefix(kMethod);
    OrOutOfMemory(kMethod, [this] { m_query += CXString::Format(kValue, {m_frameworkPrefix}); });
}

void PrintTicketQueryBuilder::AddOption(const CXString& keywordPrefix)
{
    constexpr const WCHAR* kMethod = W("PrintTicketQueryBuilder::AddOption");
    RequireFrameworkPrefix(kMethod);
    OrOutOfMemory(
        kMethod,
        [&]
        {
            const CXString feature = m_query;
            m_query += CXString::Format(kOption, {m_frameworkPrefix});
            m_query += kUnion;
            m_query += feature;
            m_query += CXString::Format(kOptionNameValue, {m_frameworkPrefix, keywordPrefix, m_frameworkPrefix});
        });
}

void PrintTicketQueryBuilder::GetQuery(BSTR* query) const
{
    constexpr const WCHAR* kMethod = W("PrintTicketQueryBuilder::GetQuery");
    if (query == nullptr)
        ThrowComException(E_POINTER, {kMethod, kSourceFile});
    OrOutOfMemory(kMethod, [&] { *query = m_query.ToBstr().Detach(); });
}

void PrintTicketQueryBuilder::AddNamed(WStringView fragment, const CXString& namePrefix, const CXString& localName,
                                       const WCHAR* method, WStringView child)
{
    RequireFrameworkPrefix(method);
    OrOutOfMemory(method,
                  [&]
                  {
                      CXString step = CXString::Format(fragment, {m_frameworkPrefix, namePrefix + localName});
                      if (!child.empty())
                          step += CXString::Format(child, {m_frameworkPrefix});
                      m_query += step;
                  });
}

void PrintTicketQueryBuilder::RequireFrameworkPrefix(const WCHAR* method) const
{
    if (m_frameworkPrefix.IsEmpty())
        ThrowComException(E_FAIL, {method, kSourceFile});
}
