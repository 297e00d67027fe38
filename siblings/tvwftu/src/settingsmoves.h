// The ways of settings between a data model, the printer's device settings, which the spooler keeps in the registry,
// and the devmode of the data model's provider.
//
// Each answers whether settings were moved. What is thrown leaves the rest unmoved.
#pragma once

#include <windows.h>

class DataSourceProviderWithDataSources;
class FeatureServices;

// Settings of the device that are not what the printer's data say. False, too, when a later driver has written those.
bool SettingsIntoRegistry(FeatureServices& from, HANDLE printer);
bool SettingsFromRegistry(HANDLE printer, FeatureServices& into);

// The document's settings that are not what the devmode says, and the core driver's settings and the paper that were
// changed in the data model; from then on they count as unchanged. A document's settings for which the devmode has no
// room are dropped. A core driver's setting that this driver does not have, or not with that value, is thrown.
bool SettingsIntoDevmode(FeatureServices& from, DataSourceProviderWithDataSources& devmodeOwner, HANDLE printer);
// Over what the data model has; false for a devmode without a maker's part.
bool SettingsFromDevmode(DataSourceProviderWithDataSources& devmodeOwner, HANDLE printer, FeatureServices& into);
