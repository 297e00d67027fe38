// The layer over every sample document, against a plain walk over the DOM: what is found, read, deleted and left.
#include <gtest/gtest.h>

#include <algorithm>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "complugins/ptpcprovider/domhelpers.h"
#include "complugins/ptpcprovider/printcapabilitiesxmldocument.h"
#include "complugins/ptpcprovider/printticketxmldocument.h"
#include "tests/common/documentcomparer.h"
#include "tests/common/failurecode.h"
#include "tests/common/testdocuments.h"
#include "tests/ptpcprovider/plaintree.h"

namespace
{

constexpr HRESULT kNotFound = PrintSchemaXmlDocument::kNotFound;
constexpr std::size_t kNone = PlainTree::kNone;
using Element = PlainTree::Element;

// What the samples hold that is no document of its kind. Wine cannot list a default declaration: there it fails with a
// code of the DOM's own.
struct RefusedSample
{
    const char* file;
    HRESULT code;
    bool anyFailure;
};

constexpr RefusedSample kRefused[] = {
    {"tickets/odd-default-namespace.xml", E_FAIL, true},
    {"tickets/odd-https-namespaces.xml", S_FALSE, false},
};

std::string XmlOf(IXMLDOMNode* node)
{
    CComBSTR text;
    node->get_xml(text.Put());
    return Utf8(text.View());
}

struct SplitName
{
    explicit SplitName(const std::string& full)
        : prefix(CXString::FromUtf8(full.substr(0, full.find(':') + 1))),
          local(CXString::FromUtf8(full.substr(full.find(':') + 1)))
    {
    }

    CXString prefix;
    CXString local;
};

// The part of a public name behind the keywords prefix; nothing for a name of another namespace.
std::optional<CXString> PublicName(const PrintSchemaXmlDocument& document, const std::string& name)
{
    const std::string prefix = document.GetNsPrefix(PrintSchema::Keywords).ToUtf8();
    if (!name.starts_with(prefix))
        return std::nullopt;
    return CXString::FromUtf8(name.substr(prefix.size()));
}

// The samples of a folder that the layer takes; the others must fail as they are known to.
template <class Document>
std::vector<std::string> TakenSamples(const std::string& folder)
{
    std::vector<std::string> taken;
    for (const std::string& file : TestDocumentsIn(folder))
    {
        SCOPED_TRACE(file);
        const ComPtr<IXMLDOMDocument2> dom = LoadTestDocument(file);
        bool isTaken = false;
        const HRESULT code = CodeOf(
            [&]
            {
                const Document document(dom.Get());
                isTaken = true;
            });
        const auto* const refused = std::find_if(std::begin(kRefused), std::end(kRefused),
                                                 [&](const RefusedSample& sample) { return sample.file == file; });
        const bool isRefused = refused != std::end(kRefused);
        EXPECT_NE(isRefused, isTaken);
        EXPECT_TRUE(!isRefused || code == refused->code || (refused->anyFailure && FAILED(code))) << code;
        if (isTaken)
            taken.push_back(file);
    }
    EXPECT_GE(taken.size(), 6u);
    return taken;
}

// The wrapped sample, written and read back unchanged.
template <class Document>
ComPtr<IXMLDOMDocument2> WrappedSample(const std::string& file)
{
    const ComPtr<IXMLDOMDocument2> dom = LoadTestDocument(file);
    const Document document(dom.Get());
    ComPtr<IXMLDOMDocument2> again = Reparse(dom.Get());
    EXPECT_EQ("", CompareDocuments(dom.Get(), again.Get()));
    return again;
}

void ExpectFound(const PrintSchemaXmlDocument& document, const PlainTree& tree, const std::string& name)
{
    const SplitName feature(name);
    ComPtr<IXMLDOMNode> node;
    ASSERT_EQ(S_OK, document.GetFeatureNodeIfExists(feature.prefix, feature.local, node.Put()));
    const std::size_t first = tree.First([&](std::size_t at) { return tree.Is(at, "Feature", name); });
    EXPECT_EQ(XmlOf(tree.All()[first].node.Get()), XmlOf(node.Get()));
}

std::optional<std::string> OptionIn(const PlainTree& tree, const std::string& feature, const std::string& optionName)
{
    const std::size_t found = tree.First(
        [&](std::size_t at)
        {
            const std::size_t parent = tree.All()[at].parent;
            return (tree.All()[at].local == "Option" && tree.Is(parent, "Feature", feature)) ||
                   (tree.All()[at].local == "Value" && tree.Is(parent, "ScoredProperty", optionName) &&
                    tree.Is(tree.All()[parent].parent, "Feature", feature));
        });
    if (found == kNone)
        return std::nullopt;
    return tree.All()[found].name ? tree.All()[found].name : tree.TextOf(found);
}

void ExpectOption(const PrintTicketXmlDocument& ticket, const PlainTree& tree, const std::string& name)
{
    const std::string keywords = ticket.GetNsPrefix(PrintSchema::Keywords).ToUtf8();
    const std::optional<CXString> feature = PublicName(ticket, name);
    if (!feature)
        return;
    const std::optional<std::string> option = OptionIn(tree, name, keywords + "OptionName");
    CComBSTR local;
    CComBSTR prefix;
    HRESULT result = S_OK;
    const HRESULT thrown = CodeOf([&] { result = ticket.GetFeatureOption(*feature, local.Put(), prefix.Put()); });
    EXPECT_EQ(!option ? kNotFound : S_OK, result);
    EXPECT_EQ(option && option->find(':') == std::string::npos ? E_FAIL : S_OK, thrown);
    EXPECT_EQ(option && thrown == S_OK ? *option : "", Utf8(prefix.View()) + Utf8(local.View()));
}

// The value of a scored property or, by its reference, of the first initialiser of that name.
std::string ValueIn(const PlainTree& tree, std::size_t property)
{
    if (const std::size_t value = tree.Child(property, "Value"); value != kNone)
        return tree.TextOf(value);
    const std::size_t reference = tree.Child(property, "ParameterRef");
    if (reference == kNone || !tree.All()[reference].name)
        return "";
    const std::size_t init =
        tree.First([&](std::size_t at) { return tree.Is(at, "ParameterInit", tree.All()[reference].name); });
    return init == kNone ? "" : tree.TextOf(init);
}

void ExpectScoredProperties(const PrintTicketXmlDocument& ticket, const PlainTree& tree, const std::string& name)
{
    const std::optional<CXString> feature = PublicName(ticket, name);
    for (const std::string& property : tree.Names("ScoredProperty"))
    {
        SCOPED_TRACE(property);
        const std::optional<CXString> local = PublicName(ticket, property);
        if (!feature || !local)
            continue;
        const std::size_t at =
            tree.First([&](std::size_t one)
                       { return tree.Is(one, "ScoredProperty", property) && tree.IsBelow(one, "Feature", name); });
        CComBSTR value;
        EXPECT_EQ(at == kNone ? kNotFound : S_OK, ticket.GetScoredPropertyValue(*feature, *local, value.Put()));
        EXPECT_EQ(at == kNone ? "" : ValueIn(tree, at), Utf8(value.View()));
    }
}

TEST(SampleTickets, TellTheirFeaturesOptionsAndProperties)
{
    for (const std::string& file : TakenSamples<PrintTicketXmlDocument>("tickets"))
    {
        SCOPED_TRACE(file);
        const ComPtr<IXMLDOMDocument2> dom = WrappedSample<PrintTicketXmlDocument>(file);
        const PrintTicketXmlDocument ticket(dom.Get());
        const PlainTree tree(dom.Get());
        for (const std::string& feature : tree.Names("Feature"))
        {
            SCOPED_TRACE(feature);
            ExpectFound(ticket, tree, feature);
            ExpectOption(ticket, tree, feature);
            ExpectScoredProperties(ticket, tree, feature);
        }
    }
}

void DeletePlainly(IXMLDOMDocument2* document, const std::string& feature)
{
    const PlainTree tree(document);
    tree.Remove(tree.First([&](std::size_t at) { return tree.Is(at, "Feature", feature); }));
    const PlainTree rest(document);
    std::set<std::optional<std::string>> referenced;
    for (const Element& element : rest.All())
        if (element.local == "ParameterRef")
            referenced.insert(element.name);
    for (std::size_t at = 0; at < rest.All().size(); ++at)
        if (rest.All()[at].local == "ParameterInit" && !referenced.contains(rest.All()[at].name))
            rest.Remove(at);
}

TEST(SampleTickets, LoseAFeatureAndItsOrphansAndNothingElse)
{
    for (const std::string& file : TakenSamples<PrintTicketXmlDocument>("tickets"))
    {
        SCOPED_TRACE(file);
        const ComPtr<IXMLDOMDocument2> whole = WrappedSample<PrintTicketXmlDocument>(file);
        const std::vector<std::string> names = PlainTree(whole.Get()).Names("Feature");
        // Of some hundred alike, some are enough.
        for (std::size_t at = 0; at < names.size(); at += 1 + names.size() / 50)
        {
            SCOPED_TRACE(names[at]);
            const ComPtr<IXMLDOMDocument2> expected = Reparse(whole.Get());
            DeletePlainly(expected.Get(), names[at]);
            const ComPtr<IXMLDOMDocument2> dom = Reparse(whole.Get());
            const PrintTicketXmlDocument ticket(dom.Get());
            const SplitName feature(names[at]);
            EXPECT_EQ(S_OK, ticket.DeleteFeatureAndOrphanParameterInitsIfExists(feature.prefix, feature.local));
            EXPECT_EQ("", CompareDocuments(expected.Get(), Reparse(dom.Get()).Get()));
        }
    }
}

void ExpectProperties(const PrintCapabilitiesXmlDocument& capabilities, const PlainTree& tree, std::size_t option,
                      IXMLDOMNode* node)
{
    std::set<std::string> seen;
    for (std::size_t at = 0; at < tree.All().size(); ++at)
    {
        std::size_t above = at;
        while (above != kNone && above != option)
            above = tree.All()[above].parent;
        const Element& property = tree.All()[at];
        if (above == kNone || property.local != "ScoredProperty" || !property.name ||
            !seen.insert(*property.name).second)
            continue;
        const std::optional<CXString> name = PublicName(capabilities, *property.name);
        if (!name)
            continue;
        CComBSTR value;
        const HRESULT code =
            CodeOf([&] { capabilities.GetChildScoredPropertyValueAsString(node, *name, value.Put()); });
        EXPECT_EQ(tree.TextOf(at), Utf8(value.View())) << *property.name;
        EXPECT_EQ(value.IsEmpty() ? E_FAIL : S_OK, code) << *property.name;
    }
}

// Gives the feature and its options new display names, in the document by the layer and in the other by hand.
void Rename(const PrintCapabilitiesXmlDocument& capabilities, const PlainTree& expected, std::size_t at,
            IXMLDOMNode* node)
{
    const std::string displayName = capabilities.GetNsPrefix(PrintSchema::Keywords).ToUtf8() + "DisplayName";
    const std::size_t value = expected.First(
        [&](std::size_t one)
        {
            const std::size_t parent = expected.All()[one].parent;
            return expected.All()[one].local == "Value" && expected.Is(parent, "Property", displayName) &&
                   expected.All()[parent].parent == at;
        });
    const CXString name = CXString(W("renamed <")) + CXString::FromUnsigned(static_cast<ULONG>(at)) + W(">");
    EXPECT_EQ(value == kNone ? kNotFound : S_OK, capabilities.ReplaceDisplayNamePropertyValue(node, name));
    if (value != kNone)
        expected.All()[value].node->put_text(name.ToBstr().Get());
}

void UseFeature(const PrintCapabilitiesXmlDocument& capabilities, const PlainTree& tree, const PlainTree& expected,
                std::size_t at)
{
    ComPtr<IXMLDOMNodeList> list;
    ASSERT_EQ(S_OK, capabilities.GetChildOptionNodes(tree.All()[at].node.Get(), list.Put()));
    const std::vector<ComPtr<IXMLDOMNode>> options = NodesOf(list.Get(), {W("UseFeature"), W("tests"), 0});
    std::size_t next = 0;
    std::set<std::string> seen;
    for (std::size_t child = 0; child < tree.All().size(); ++child)
    {
        const Element& option = tree.All()[child];
        if (option.parent != at || option.local != "Option")
            continue;
        ASSERT_LT(next, options.size());
        IXMLDOMNode* const node = options[next++].Get();
        EXPECT_EQ(XmlOf(option.node.Get()), XmlOf(node));
        ExpectProperties(capabilities, tree, child, node);
        Rename(capabilities, expected, child, node);
        if (!option.name || !seen.insert(*option.name).second)
            continue;
        ComPtr<IXMLDOMNode> found;
        const SplitName name(*option.name);
        ASSERT_EQ(S_OK, capabilities.GetChildOptionNodeIfExists(tree.All()[at].node.Get(), name.prefix, name.local,
                                                                found.Put()));
        EXPECT_EQ(XmlOf(node), XmlOf(found.Get()));
    }
    EXPECT_EQ(next, options.size());
    Rename(capabilities, expected, at, tree.All()[at].node.Get());
}

TEST(SampleCapabilities, TellTheirContentAndTakeNewDisplayNames)
{
    for (const std::string& file : TakenSamples<PrintCapabilitiesXmlDocument>("capabilities"))
    {
        SCOPED_TRACE(file);
        const ComPtr<IXMLDOMDocument2> dom = WrappedSample<PrintCapabilitiesXmlDocument>(file);
        const ComPtr<IXMLDOMDocument2> other = Reparse(dom.Get());
        const PrintCapabilitiesXmlDocument capabilities(dom.Get());
        const PlainTree tree(dom.Get());
        const PlainTree expected(other.Get());
        ASSERT_EQ(tree.All().size(), expected.All().size());
        for (const std::string& feature : tree.Names("Feature"))
            ExpectFound(capabilities, tree, feature);
        for (std::size_t at = 0; at < tree.All().size(); ++at)
            if (tree.All()[at].local == "Feature")
                UseFeature(capabilities, tree, expected, at);
        EXPECT_EQ("", CompareDocuments(other.Get(), Reparse(dom.Get()).Get()));
    }
}

// Deletes one element of a sample after the other, each from a fresh copy.
template <class Delete>
void ExpectOneLess(const ComPtr<IXMLDOMDocument2>& whole, const char* element, Delete deleteNode)
{
    for (const std::string& name : PlainTree(whole.Get()).Names(element))
    {
        SCOPED_TRACE(name);
        const ComPtr<IXMLDOMDocument2> expected = Reparse(whole.Get());
        const PlainTree tree(expected.Get());
        tree.Remove(tree.First([&](std::size_t at) { return tree.Is(at, element, name); }));
        const ComPtr<IXMLDOMDocument2> dom = Reparse(whole.Get());
        EXPECT_EQ(S_OK, deleteNode(PrintCapabilitiesXmlDocument(dom.Get()), SplitName(name)));
        EXPECT_EQ("", CompareDocuments(expected.Get(), Reparse(dom.Get()).Get()));
    }
}

TEST(SampleCapabilities, LoseAFeatureOrADefinitionAndNothingElse)
{
    for (const std::string& file : TakenSamples<PrintCapabilitiesXmlDocument>("capabilities"))
    {
        SCOPED_TRACE(file);
        const ComPtr<IXMLDOMDocument2> whole = WrappedSample<PrintCapabilitiesXmlDocument>(file);
        ExpectOneLess(whole, "ParameterDef",
                      [](const PrintCapabilitiesXmlDocument& capabilities, const SplitName& name)
                      { return capabilities.DeleteParameterDefNodeIfExists(name.prefix, name.local); });
        ExpectOneLess(whole, "Feature",
                      [](const PrintCapabilitiesXmlDocument& capabilities, const SplitName& name)
                      { return capabilities.DeleteFeatureNodeIfExists(name.prefix, name.local); });
    }
}

// A keywords URI with a fault in its spelling declares another namespace: it is neither found nor mended.
TEST(SampleCapabilities, WithoutTheKeywordsNamespaceHaveNoPrefixForIt)
{
    const ComPtr<IXMLDOMDocument2> dom = LoadTestDocument("capabilities/odd-keywords-uri.xml");
    const std::string before = TextOf(dom.Get());
    const PrintCapabilitiesXmlDocument capabilities(dom.Get());
    EXPECT_TRUE(capabilities.GetNsPrefix(PrintSchema::Keywords).IsEmpty());
    EXPECT_EQ(before, TextOf(dom.Get()));
    ComPtr<IXMLDOMElement> feature;
    capabilities.CreatePickOneFeature(W("F"), W("D"), feature.Put());
    capabilities.AppendChildToRootNode(feature.Get());
    const ComPtr<IXMLDOMDocument2> again = Reparse(dom.Get());
    EXPECT_EQ((std::vector<std::string>{"DisplayName", "psf:SelectionType"}),
              Select(again.Get(), "//psf:Feature[@name = 'F']/psf:Property/@name"));
}

} // namespace
