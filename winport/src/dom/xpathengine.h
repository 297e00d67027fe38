// XPathEngine: the XPath context of one tree, kept with its namespaces between queries, and the compiled expressions.
#pragma once

#include <libxml/xpath.h>

#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "dom/documentsettings.h"

namespace winport::dom
{

class XPathEngine
{
public:
    // The document must outlive the engine.
    explicit XPathEngine(xmlDoc* document) noexcept;
    XPathEngine(const XPathEngine&) = delete;
    XPathEngine& operator=(const XPathEngine&) = delete;

    // The prefixes that expressions may use from now on.
    void SetNamespaces(const SelectionBindings& bindings);

    // The nodes that the expression selects from the context node, in document order. Throws Failure(E_FAIL) for an
    // expression that cannot be parsed or evaluated or that gives no node-set.
    std::vector<xmlNode*> Select(xmlNode* context, const std::string& expression);

    // The first of them, or null.
    xmlNode* SelectFirst(xmlNode* context, const std::string& expression);

private:
    struct FreeContext
    {
        void operator()(xmlXPathContext* context) const noexcept
        {
            xmlXPathFreeContext(context);
        }
    };

    struct FreeCompiled
    {
        void operator()(xmlXPathCompExpr* expression) const noexcept
        {
            xmlXPathFreeCompExpr(expression);
        }
    };

    struct FreeResult
    {
        void operator()(xmlXPathObject* result) const noexcept
        {
            xmlXPathFreeObject(result);
        }
    };

    using Compiled = std::unique_ptr<xmlXPathCompExpr, FreeCompiled>;
    using Result = std::unique_ptr<xmlXPathObject, FreeResult>;

    xmlXPathContext* Context();
    std::vector<xmlNode*> SelectPart(xmlNode* context, const std::string& expression);
    xmlXPathCompExpr* Compile(const std::string& expression);
    Result Evaluate(xmlNode* context, const std::string& expression);

    xmlDoc* m_document;
    std::unique_ptr<xmlXPathContext, FreeContext> m_context; // made by the first query
    std::unordered_map<std::string, Compiled> m_compiled;
};

} // namespace winport::dom
