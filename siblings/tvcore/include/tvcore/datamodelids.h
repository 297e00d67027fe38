// DataModelIds: the numbers of the feature data model, each named once.
//
// They are stored in devmodes, in the attribute bytes of the driver's private part and in printer models, so they
// never change. A number without a name here is one that no module of ours treats specially.
#pragma once

#include <cstdint>

namespace DataModelIds
{

// Features: what can be set.
namespace Feature
{
enum tagFeatureEnum : std::int32_t
{
    // The core driver's features, under their own numbers.
    MsOrientation = 3,
    MsScale = 4,
    MsCopies = 5,
    MsCollation = 6,
    MsDefaultSource = 7,
    MsResolution = 8,
    MsColorMode = 9,
    MsDuplex = 10,
    MsTrueTypeOption = 11,
    MsPaperSize = 12,
    MsPaperWidth = 13,
    MsPaperLength = 14,
    MsIcmMethod = 15,
    MsIcmIntent = 16,
    MsMediaType = 17,
    MsDitherType = 18,
    MsPagesPerSheet = 19,
    MsBooklet = 20,
    MsPageOrder = 21,
    MsQualityMacro = 22,
    MsAdvancedPrinting = 23,
    MsPsOutputFormat = 24,
    MsPsLanguageLevel = 25,
    MsPsErrorHandler = 26,
    MsPsMirroredImage = 27,
    MsPsNegativeImage = 28,
    MsPsTrueTypeDownload = 29,
    MsPrintOptimization = 30,
    MsGraphicsMode = 31,
    MsTrueTypeDownload = 32,
    MsHalftone = 33,
    MsColorPrintingMode = 34,
    MsEdgeToEdge = 35,

    // The job.
    JobCopies = 43,
    JobCollation = 45,
    JobPlex = 46,
    JobSignature = 59,
    JobDisposition = 63,
    JobTitle = 78,
    JobSenderName = 82,
    JobRecipientName = 83,
    JobMessage = 84,
    JobStartMessage = 85,
    JobRotation = 88,
    ImageShiftX = 95,
    ImageShiftY = 96,
    ImageShiftX2 = 97, // the back side's
    ImageShiftY2 = 98,
    HighlightPrintingColor = 101,
    HighlightMappingColor = 102,
    HighlightMappingAlgorithm = 103,
    MismatchedHighlightColor = 104,
    SlipSheeting = 145,
    FinishingBypass = 146,
    PageExceptionsPlex = 199,
    PageExceptions = 200,
    Finishing = 208,

    // The paper.
    PaperColor = 174,
    MediaType = 175,
    TabCount = 176,
    PaperDrilling = 178,
    PaperWeight = 179,
    MediaCollection = 210,     // holds MediaType
    PageMediaCollection = 477, // holds MediaCollection

    // The device's settings.
    ReplaceDriverPaperInSpreadsheets = 720,

    // Of the device capabilities' namespace in a devmode (docs/devmode-format.md).
    DevicePaperList = 30001,
};
} // namespace Feature
using Feature::tagFeatureEnum;

// Values: what an option feature can be set to.
namespace Value
{
enum tagValueEnum : std::int32_t
{
    Automatic = 5001, // also: nothing chosen, no product known

    // Core driver settings.
    MsPortrait = 5010,
    MsLandscape = 5011,
    MsRotatedLandscape = 5012,
    MsResolution200x200 = 5020,
    MsResolution300x300 = 5021,
    MsResolution400x400 = 5022,
    MsResolution600x600 = 5023,
    MsResolution600x1200 = 5024,
    MsResolution1200x600 = 5025,
    MsResolution1200x1200 = 5026,
    MsResolution1800x1800 = 5027,
    MsResolution2400x2400 = 5028,
    MsTrueTypeDownloadSoftFont = 5051,
    MsTrueTypeSubstituteDeviceFont = 5053,
    MsIcmDisabled = 5070,
    MsIcmByHost = 5071,
    MsIcmByDriver = 5072,
    MsIcmByDevice = 5073,
    MsIntentAbsoluteColorimetric = 5090,
    MsIntentColorimetric = 5091,
    MsIntentContrast = 5092,
    MsIntentSaturate = 5093,
    MsBookletOff = 5110,
    MsBookletOn = 5111,
    MsPageOrderNormal = 5120,
    MsPageOrderReverse = 5121,
    MsQualityBest = 5130,
    MsQualityNormal = 5131,
    MsQualityDraft = 5132,
    MsQualityCustom = 5133,
    MsAdvancedPrintingOff = 5150,
    MsAdvancedPrintingOn = 5151,
    MsPsDownloadAutomatic = 5210,
    MsPsDownloadOutline = 5211,
    MsPsDownloadBitmap = 5212,
    MsPsDownloadNative = 5213,

    // The job.
    Collated = 5410,
    Uncollated = 5411,
    Simplex = 5420,
    DuplexLongEdge = 5421,
    DuplexShortEdge = 5422, // tumble
    SignatureOff = 5510,
    SignatureOn = 5511,
    DispositionPrint = 5530,
    DispositionSave = 5531,
    DispositionPrintAndSave = 5532,
    Rotation0 = 5600,
    Rotation90 = 5601,
    Rotation180 = 5602,
    Rotation270 = 5603,
    ColorModeColor = 5970,
    ColorModeMonochrome = 5971,

    // Highlight colours. The two lists differ on purpose: only the mapping has a yellow.
    HighlightPrintingRed = 5750,
    HighlightPrintingGreen = 5751,
    HighlightPrintingBlue = 5752,
    HighlightPrintingCyan = 5753,
    HighlightPrintingMagenta = 5754,
    HighlightPrintingBlack = 5755,
    HighlightPrintingCardinal = 5756,
    HighlightPrintingRoyal = 5757,
    HighlightPrintingRuby = 5758,
    HighlightPrintingViolet = 5759,
    HighlightPrintingBrown = 5760,
    HighlightPrintingUnnamed = 5761, // no job ticket names it
    HighlightPrintingOther = 5762,
    HighlightMappingRed = 5800,
    HighlightMappingGreen = 5801,
    HighlightMappingBlue = 5802,
    HighlightMappingCyan = 5803,
    HighlightMappingMagenta = 5804,
    HighlightMappingBlack = 5805,
    HighlightMappingCardinal = 5806,
    HighlightMappingRoyal = 5807,
    HighlightMappingRuby = 5808,
    HighlightMappingViolet = 5809,
    HighlightMappingBrown = 5810,
    HighlightMappingYellow = 5811,
    HighlightMappingOther = 5812,
    HighlightAlgorithmAutomatic = 5850,
    HighlightAlgorithmPictorial = 5851,
    HighlightAlgorithmPresentation = 5852,
    HighlightAlgorithmPictorialTable = 5853,
    HighlightAlgorithmColorToHighlight = 5854,
    HighlightAlgorithmMonochrome = 5855,
    HighlightMismatchSelectCurrent = 5900,
    HighlightMismatchHold = 5901,
    HighlightMismatchAbort = 5902,

    // Finishing.
    FinishingBooklet = 6252,
    StitchingSinglePortrait = 6254,
    StitchingSingleLandscape = 6255,
    StitchingRightSinglePortrait = 6256,
    StitchingRightSingleLandscape = 6257,
    StitchingDualLandscape = 6258,
    StitchingDualPortrait = 6259,
    StitchingRightDualLandscape = 6260,
    StitchingRightDualPortrait = 6261,
    BindingLeft = 6275,
    BindingRight = 6276,

    // Page sizes: 6430 to 6699; tvcore/pagesizetable.h has them all.
    PageSizeFirst = 6430,
    PageSizeLetter = 6430,
    PageSizeA4 = 6436,
    PageSizeLast = 6699,

    // Paper.
    PaperColorNone = 6750,
    PaperColorWhite = 6751,
    PaperColorPink = 6752,
    PaperColorYellow = 6753,
    PaperColorBlue = 6754,
    PaperColorGreen = 6755,
    PaperColorBuff = 6756,
    PaperColorGoldenrod = 6757,
    PaperColorRed = 6758,
    PaperColorGray = 6759,
    PaperColorIvory = 6760,
    PaperColorOrange = 6761,
    MediaAutoSelect = 6799, // published like Automatic
    MediaPlain = 6800,
    MediaTransparency = 6801,
    MediaTabStock = 6802,
    MediaTabStockPreCut = 6803,
    MediaTabStockFull = 6804,
    MediaLabel = 6805,
    MediaEnvelope = 6806,
    MediaCardstockGlossy = 6820,
    MediaLastPredefined = 6878,
    MediaPreprinted = 6890,
    MediaLastReserved = 9686, // values above are custom: no table has them, they bring their names with them
    PaperUndrilled = 6920,
    PaperDrilled = 6921,

    // Pages per sheet.
    PagesPerSheet1 = 7240,
    PagesPerSheet2 = 7241,
    PagesPerSheet4 = 7242,
    PagesPerSheet6 = 7243,
    PagesPerSheet9 = 7244,
    PagesPerSheet16 = 7245,

    // What a form is measured in where it is shown; its own lengths are always tenths of a millimetre.
    UnitsMetric = 7491,
    UnitsInches = 7492,

    // Controller families. ProductData::ValueEnum has the same numbers.
    ControllerFamilyXps = 8430,
    ControllerFamilyMonochrome = 8431,
    ControllerFamilyColor = 8434,
};
} // namespace Value
using Value::tagValueEnum;

// Where a size of paper comes from.
enum PageSizeTypeEnum : std::int32_t
{
    PageSizeStandard = 25001,     // in the page-size dictionary: the usual sheets and envelopes
    PageSizeExtended = 25002,     // in the page-size dictionary: further sizes, looked up after those
    PageSizeDriverCustom = 25003, // the driver's custom size, and the user's named ones in the registry
    PageSizeDriverForm = 25004,   // the driver's own form of a size that the dictionary has
    PageSizeUserForm = 25005,     // a form that somebody added to the spooler
    PageSizeUnlisted = 25007,     // a custom size that is set but never published
};

} // namespace DataModelIds
