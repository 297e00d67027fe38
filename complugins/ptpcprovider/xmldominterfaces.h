// The DOM interfaces that the document wrappers use, with their ids by type.
#pragma once

#include <msxml2.h>

#include "utilitiesstaticlib/comptr.h"

template <>
struct IidOf<IXMLDOMElement>
{
    static const IID& Value()
    {
        return IID_IXMLDOMElement;
    }
};

template <>
struct IidOf<IXMLDOMAttribute>
{
    static const IID& Value()
    {
        return IID_IXMLDOMAttribute;
    }
};

template <>
struct IidOf<IXMLDOMNode>
{
    static const IID& Value()
    {
        return IID_IXMLDOMNode;
    }
};
