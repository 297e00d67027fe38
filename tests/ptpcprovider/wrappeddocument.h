// A document with its wrapper, as the tests of the document layer want them.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "complugins/ptpcprovider/printcapabilitiesxmldocument.h"
#include "complugins/ptpcprovider/printticketxmldocument.h"
#include "tests/common/documentcomparer.h"
#include "tests/common/testdocuments.h"
#include "tests/platform/wine.h"

using Texts = std::vector<std::string>;

template <class Document>
class Wrapped
{
public:
    explicit Wrapped(const std::string& text, bool keepBlanks = false)
        : m_dom(LoadDocument(text, keepBlanks)), m_document(m_dom.Get())
    {
    }

    const Document* operator->() const noexcept
    {
        return &m_document;
    }

    [[nodiscard]] IXMLDOMDocument2* Dom() const noexcept
    {
        return m_dom.Get();
    }

    [[nodiscard]] ComPtr<IXMLDOMNode> Feature(const WCHAR* publicName) const
    {
        ComPtr<IXMLDOMNode> feature;
        m_document.GetFeatureNode(W("psk:"), publicName, feature.Put());
        return feature;
    }

    // As it stands, and as it is read back.
    void ExpectIs(const std::string& text) const
    {
        const ComPtr<IXMLDOMDocument2> expected = LoadDocument(text);
        if (!IsWine()) // whose DOM learns the namespace of a new attribute from the text only
        {
            EXPECT_EQ("", CompareDocuments(expected.Get(), m_dom.Get()));
        }
        EXPECT_EQ("", CompareDocuments(expected.Get(), Reparse(m_dom.Get()).Get()));
    }

private:
    ComPtr<IXMLDOMDocument2> m_dom;
    Document m_document;
};

using WrappedTicket = Wrapped<PrintTicketXmlDocument>;
using WrappedCapabilities = Wrapped<PrintCapabilitiesXmlDocument>;
