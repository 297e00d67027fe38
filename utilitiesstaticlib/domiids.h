// The interface ids of the DOM, by type, for ComPtr::As and QueryInterface on both platforms (MinGW's import libraries
// lack some of them). The values are MSXML's published ones.
#pragma once

#include <msxml2.h>

#include "utilitiesstaticlib/iidof.h"

template <>
struct IidOf<IDispatch>
{
    static const IID& Value()
    {
        return IID_IDispatch;
    }
};

template <>
struct IidOf<IXMLDOMImplementation>
{
    static const IID& Value()
    {
        static constexpr IID kId{0x2933BF8F, 0x7B36, 0x11D2, {0xB2, 0x0E, 0x00, 0xC0, 0x4F, 0x98, 0x3E, 0x60}};
        return kId;
    }
};

template <>
struct IidOf<IXMLDOMNode>
{
    static const IID& Value()
    {
        static constexpr IID kId{0x2933BF80, 0x7B36, 0x11D2, {0xB2, 0x0E, 0x00, 0xC0, 0x4F, 0x98, 0x3E, 0x60}};
        return kId;
    }
};

template <>
struct IidOf<IXMLDOMDocumentFragment>
{
    static const IID& Value()
    {
        static constexpr IID kId{0x3EFAA413, 0x272F, 0x11D2, {0x83, 0x6F, 0x00, 0x00, 0xF8, 0x7A, 0x77, 0x82}};
        return kId;
    }
};

template <>
struct IidOf<IXMLDOMDocument>
{
    static const IID& Value()
    {
        static constexpr IID kId{0x2933BF81, 0x7B36, 0x11D2, {0xB2, 0x0E, 0x00, 0xC0, 0x4F, 0x98, 0x3E, 0x60}};
        return kId;
    }
};

template <>
struct IidOf<IXMLDOMDocument2>
{
    static const IID& Value()
    {
        static constexpr IID kId{0x2933BF95, 0x7B36, 0x11D2, {0xB2, 0x0E, 0x00, 0xC0, 0x4F, 0x98, 0x3E, 0x60}};
        return kId;
    }
};

template <>
struct IidOf<IXMLDOMNodeList>
{
    static const IID& Value()
    {
        static constexpr IID kId{0x2933BF82, 0x7B36, 0x11D2, {0xB2, 0x0E, 0x00, 0xC0, 0x4F, 0x98, 0x3E, 0x60}};
        return kId;
    }
};

template <>
struct IidOf<IXMLDOMNamedNodeMap>
{
    static const IID& Value()
    {
        static constexpr IID kId{0x2933BF83, 0x7B36, 0x11D2, {0xB2, 0x0E, 0x00, 0xC0, 0x4F, 0x98, 0x3E, 0x60}};
        return kId;
    }
};

template <>
struct IidOf<IXMLDOMCharacterData>
{
    static const IID& Value()
    {
        static constexpr IID kId{0x2933BF84, 0x7B36, 0x11D2, {0xB2, 0x0E, 0x00, 0xC0, 0x4F, 0x98, 0x3E, 0x60}};
        return kId;
    }
};

template <>
struct IidOf<IXMLDOMAttribute>
{
    static const IID& Value()
    {
        static constexpr IID kId{0x2933BF85, 0x7B36, 0x11D2, {0xB2, 0x0E, 0x00, 0xC0, 0x4F, 0x98, 0x3E, 0x60}};
        return kId;
    }
};

template <>
struct IidOf<IXMLDOMElement>
{
    static const IID& Value()
    {
        static constexpr IID kId{0x2933BF86, 0x7B36, 0x11D2, {0xB2, 0x0E, 0x00, 0xC0, 0x4F, 0x98, 0x3E, 0x60}};
        return kId;
    }
};

template <>
struct IidOf<IXMLDOMText>
{
    static const IID& Value()
    {
        static constexpr IID kId{0x2933BF87, 0x7B36, 0x11D2, {0xB2, 0x0E, 0x00, 0xC0, 0x4F, 0x98, 0x3E, 0x60}};
        return kId;
    }
};

template <>
struct IidOf<IXMLDOMComment>
{
    static const IID& Value()
    {
        static constexpr IID kId{0x2933BF88, 0x7B36, 0x11D2, {0xB2, 0x0E, 0x00, 0xC0, 0x4F, 0x98, 0x3E, 0x60}};
        return kId;
    }
};

template <>
struct IidOf<IXMLDOMProcessingInstruction>
{
    static const IID& Value()
    {
        static constexpr IID kId{0x2933BF89, 0x7B36, 0x11D2, {0xB2, 0x0E, 0x00, 0xC0, 0x4F, 0x98, 0x3E, 0x60}};
        return kId;
    }
};

template <>
struct IidOf<IXMLDOMCDATASection>
{
    static const IID& Value()
    {
        static constexpr IID kId{0x2933BF8A, 0x7B36, 0x11D2, {0xB2, 0x0E, 0x00, 0xC0, 0x4F, 0x98, 0x3E, 0x60}};
        return kId;
    }
};

template <>
struct IidOf<IXMLDOMParseError>
{
    static const IID& Value()
    {
        static constexpr IID kId{0x3EFAA426, 0x272F, 0x11D2, {0x83, 0x6F, 0x00, 0x00, 0xF8, 0x7A, 0x77, 0x82}};
        return kId;
    }
};
