#include "dom/xpathengine.h"

#include <libxml/xpathInternals.h>

#include <new>

#include "dom/failure.h"
#include "dom/nodekinds.h"
#include "dom/strings.h"
#include "dom/xpathunion.h"

namespace winport::dom
{

namespace
{

// The queries of this product are some two dozen; a caller that makes up ever new ones must not fill the memory.
constexpr std::size_t kMaximumCompiled = 64;

// A query over the largest document that may be loaded takes some ten million steps.
constexpr unsigned long kMaximumSteps = 500'000'000;

// Errors become HRESULTs; nothing is printed.
void IgnoreError(void*, xmlErrorPtr)
{
}

} // namespace

XPathEngine::XPathEngine(xmlDoc* document) noexcept : m_document(document)
{
}

void XPathEngine::SetNamespaces(const SelectionBindings& bindings)
{
    xmlXPathContext* const context = Context();
    xmlXPathRegisteredNsCleanup(context);
    for (const auto& [prefix, uri] : bindings)
    {
        if (xmlXPathRegisterNs(context, XmlChars(prefix), XmlChars(uri)) != 0)
            throw std::bad_alloc();
    }
}

std::vector<xmlNode*> XPathEngine::Select(xmlNode* context, const std::string& expression)
{
    const std::vector<std::string> parts = SplitUnion(expression);
    if (parts.size() == 1)
        return SelectPart(context, expression);
    std::vector<std::vector<xmlNode*>> lists;
    lists.reserve(parts.size());
    for (const std::string& part : parts)
        lists.push_back(SelectPart(context, part));
    return UniteInDocumentOrder(lists);
}

xmlNode* XPathEngine::SelectFirst(xmlNode* context, const std::string& expression)
{
    const std::vector<xmlNode*> nodes = Select(context, expression);
    return nodes.empty() ? nullptr : nodes.front();
}

std::vector<xmlNode*> XPathEngine::SelectPart(xmlNode* context, const std::string& expression)
{
    const Result result = Evaluate(context, expression);
    const xmlNodeSet* const set = result->nodesetval;
    std::vector<xmlNode*> nodes;
    for (int at = 0; set != nullptr && at < set->nodeNr; ++at)
    {
        // Namespace nodes are not part of the tree, so nothing can be handed out for them.
        if (set->nodeTab[at]->type != XML_NAMESPACE_DECL)
            nodes.push_back(set->nodeTab[at]);
    }
    return nodes;
}

xmlXPathContext* XPathEngine::Context()
{
    if (m_context == nullptr)
    {
        m_context.reset(xmlXPathNewContext(m_document));
        if (m_context == nullptr)
            throw std::bad_alloc();
        m_context->error = IgnoreError;
        m_context->opLimit = kMaximumSteps;
    }
    return m_context.get();
}

xmlXPathCompExpr* XPathEngine::Compile(const std::string& expression)
{
    if (const auto known = m_compiled.find(expression); known != m_compiled.end())
        return known->second.get();
    // A zero would hide the rest of the expression from the C function.
    if (expression.find('\0') != std::string::npos)
        throw Failure{E_FAIL};
    Compiled compiled(xmlXPathCtxtCompile(Context(), XmlChars(expression)));
    if (compiled == nullptr)
        throw Failure{E_FAIL};
    if (m_compiled.size() >= kMaximumCompiled)
        m_compiled.clear();
    return m_compiled.emplace(expression, std::move(compiled)).first->second.get();
}

XPathEngine::Result XPathEngine::Evaluate(xmlNode* context, const std::string& expression)
{
    xmlXPathCompExpr* const compiled = Compile(expression);
    xmlXPathContext* const xpath = Context();
    xpath->opCount = 0;
    xpath->node = context;
    Result result(xmlXPathCompiledEval(compiled, xpath));
    xpath->node = nullptr;
    if (result == nullptr || result->type != XPATH_NODESET)
        throw Failure{E_FAIL};
    return result;
}

} // namespace winport::dom
