// AttributeBytesListTranslator: settings of the data model, out of attribute bytes and back into them.
//
// What the data model does not take stays out of it and stays in the bytes: features that the catalogue does not have,
// values of another kind or beyond what the feature takes, and values elsewhere than in their collection.
//
// Handed out by FeatureServices, whose settings it borrows. The library is delay-loaded (tvcore/tvcoreapi.h).
#pragma once

#include <windows.h>

#include <cstddef>

#include <tvcore/featurecatalogue.h>
#include <tvcore/featuresettings.h>
#include <tvcore/tvcoreapi.h>
#include <tvutil/attributebytesindexedlist.h>

// By which the feature services hand translators out.
namespace TranslatorIds
{
inline constexpr LONG kSettings = 214;
inline constexpr LONG kAttributeBytes = 401;
// Whose settings.
inline constexpr LONG kDocument = 301;
inline constexpr LONG kDevice = 302;
} // namespace TranslatorIds

class TVCORE_API AttributeBytesListTranslator
{
public:
    // `defaults`: what a feature is while neither list nor settings say anything of it.
    AttributeBytesListTranslator(FeatureCatalogue::Scope scope, FeatureSettings& settings,
                                 const FeatureSettings& defaults);

    // How many features got a value; a list counts as one. Lists are taken whole or not at all; what an item of one
    // holds that the data model does not take is left out of the item.
    std::size_t ImportSettings(const AttributeBytesIndexedList& list);

    // Whether the list is another one now. Only features whose setting is not what the list, or else the default, says
    // are written, an option as somebody's choice; all else stays as it is. Throws, with nothing changed, what
    // FeatureCatalogue::StoreValue throws.
    bool ExportSettings(AttributeBytesIndexedList& list) const;

private:
    FeatureCatalogue::Scope m_scope;
    FeatureSettings& m_settings;
    const FeatureSettings& m_defaults;
};
