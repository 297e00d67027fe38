// DocumentObject: loading and saving.
#include <utility>

#include "core/utf.h"
#include "dom/documentobject.h"
#include "dom/loader.h"
#include "dom/nodekinds.h"
#include "dom/parseerrorobject.h"
#include "dom/serializer.h"
#include "dom/source.h"
#include "dom/strings.h"
#include "dom/variants.h"
#include "utilitiesstaticlib/documentlimits.h"

namespace winport::dom
{

namespace
{

using namespace documentlimits;

struct SourceText
{
    std::string utf8;               // without byte-order mark
    std::optional<LoadError> error; // set when there is no text
};

// The text of a BSTR. Its XML declaration may name any encoding: the text is UTF-16 all the same.
SourceText TextOfBstr(BSTR text)
{
    SourceText source;
    std::u16string_view view = BstrView(text);
    if (view.starts_with(u'\xFEFF'))
        view.remove_prefix(1);
    const char* reason = nullptr;
    if (view.size() > kMaximumTextBytes) // no need to convert it: UTF-8 has at least as many bytes
        reason = kTooLarge;
    else if (!ToUtf8Strict(view, source.utf8))
        reason = kLoneSurrogate;
    if (reason != nullptr)
        source.error = ErrorAt({}, 0, reason);
    return source;
}

bool IsUtf16Name(std::string_view encoding)
{
    return encoding.size() == 6 && (encoding[0] | 0x20) == 'u' && (encoding[1] | 0x20) == 't' &&
           (encoding[2] | 0x20) == 'f' && encoding.substr(3) == "-16";
}

HRESULT Answer(bool isLoaded, VARIANT_BOOL* isSuccessful)
{
    if (isSuccessful != nullptr)
        *isSuccessful = isLoaded ? VARIANT_TRUE : VARIANT_FALSE;
    return isLoaded ? S_OK : S_FALSE;
}

} // namespace

HRESULT DocumentObject::load(VARIANT, VARIANT_BOOL*)
{
    return Call([] { return E_NOTIMPL; });
}

HRESULT DocumentObject::loadXML(BSTR text, VARIANT_BOOL* isSuccessful)
{
    return Call(
        [&]
        {
            if (isSuccessful != nullptr)
                *isSuccessful = VARIANT_FALSE;
            SourceText source = TextOfBstr(text);
            return Answer(Load(source.utf8, std::move(source.error)), isSuccessful);
        });
}

HRESULT DocumentObject::save(VARIANT destination)
{
    return Call(
        [&]
        {
            BSTR const* const path = StringOf(destination);
            if (path == nullptr)
                return E_NOTIMPL; // streams and other documents
            const xmlNode* const first = Node()->children;
            const bool hasDeclaration = first != nullptr && IsXmlDeclaration(first);
            const bool asUtf16 = hasDeclaration && IsUtf16Name(DeclaredEncoding(View(first->content)));
            // Any encoding but these two is written as UTF-8, and the declaration says so.
            return WriteDocumentFile(Utf8Of(*path), Serialize(Node(), asUtf16 ? "UTF-16" : "UTF-8"), asUtf16);
        });
}

HRESULT DocumentObject::get_parseError(IXMLDOMParseError** error)
{
    return Call(
        [&]
        {
            if (error == nullptr)
                return E_INVALIDARG;
            *error = nullptr;
            *error = new ParseErrorObject(m_outcome);
            return S_OK;
        });
}

HRESULT DocumentObject::validate(IXMLDOMParseError**)
{
    return Call([] { return E_NOTIMPL; });
}

HRESULT DocumentObject::get_readyState(LONG*)
{
    return Call([] { return E_NOTIMPL; });
}

HRESULT DocumentObject::get_url(BSTR*)
{
    return Call([] { return E_NOTIMPL; });
}

HRESULT DocumentObject::abort()
{
    return Call([] { return S_OK; });
}

bool DocumentObject::Load(std::string_view utf8, std::optional<LoadError> error)
{
    TreePtr tree = Tree::Create(GetTree()->Settings());
    if (!error)
        error = LoadText(utf8, *tree);
    if (error) // what was read so far is not shown
        tree = Tree::Create(GetTree()->Settings());
    const bool isLoaded = !error;
    if (isLoaded)
    {
        error.emplace();
        error->code = S_OK;
    }
    m_outcome = std::move(*error);
    Rebind(tree, tree->DocumentNode());
    return isLoaded;
}

} // namespace winport::dom
