// The page-size table: every size that the page-size dictionary knows.
//
// Keyword names and sizes are those of the option names of "PageMediaSize" in the public Print Schema Keywords (rolls
// and sizes without two fixed lengths left out); the others are the maker's own and live in the private namespace.
// Value ids are stored in devmodes and printer models: a row never changes its own, a new one takes a free one.
#pragma once

#include <tvcore/datamodelids.h>

#include <cstdint>

#include "utilitiesstaticlib/wideliteral.h"

struct PageSizeRow
{
    DataModelIds::PageSizeTypeEnum type; // PageSizeStandard or PageSizeExtended
    std::int32_t valueId;
    std::int32_t width; // microns
    std::int32_t length;
    WStringView optionName;
    bool isKeyword; // of the Print Schema
};

namespace PageSizeTable
{

inline constexpr auto kStandard = DataModelIds::PageSizeStandard;
inline constexpr auto kExtended = DataModelIds::PageSizeExtended;

// clang-format off
inline constexpr PageSizeRow kRows[] = {
    //           value  width    length    option name                                      keyword
    {kStandard, 6430, 215900,  279400,  W("NorthAmericaLetter"),                            true},
    {kStandard, 6431, 215900,  355600,  W("NorthAmericaLegal"),                             true},
    {kStandard, 6432, 279400,  431800,  W("NorthAmericaTabloid"),                           true},
    {kStandard, 6433, 184150,  266700,  W("NorthAmericaExecutive"),                         true},
    {kStandard, 6434, 139700,  215900,  W("NorthAmericaStatement"),                         true},
    {kStandard, 6435, 297000,  420000,  W("ISOA3"),                                         true},
    {kStandard, 6436, 210000,  297000,  W("ISOA4"),                                         true},
    {kStandard, 6437, 148000,  210000,  W("ISOA5"),                                         true},
    {kStandard, 6438, 105000,  148000,  W("ISOA6"),                                         true},
    {kStandard, 6439, 257000,  364000,  W("JISB4"),                                         true},
    {kStandard, 6440, 182000,  257000,  W("JISB5"),                                         true},
    {kStandard, 6441, 128000,  182000,  W("JISB6"),                                         true},
    {kStandard, 6442, 250000,  353000,  W("ISOB4"),                                         true},
    {kStandard, 6443, 176000,  250000,  W("ISOB5Envelope"),                                 true},
    {kStandard, 6444, 250000,  353000,  W("ISOB4Envelope"),                                 true},
    {kStandard, 6446, 100000,  148000,  W("JapanHagakiPostcard"),                           true},
    {kStandard, 6447, 200000,  148000,  W("JapanDoubleHagakiPostcard"),                     true},
    {kStandard, 6448, 215900,  330200,  W("OtherMetricFolio"),                              true},
    {kStandard, 6449, 215000,  275000,  W("NorthAmericaQuarto"),                            true},
    {kStandard, 6450, 104775,  241300,  W("NorthAmericaNumber10Envelope"),                  true},
    {kStandard, 6451, 98425,   190500,  W("NorthAmericaMonarchEnvelope"),                   true},
    {kStandard, 6452, 110000,  220000,  W("ISODLEnvelope"),                                 true},
    {kStandard, 6453, 162000,  229000,  W("ISOC5Envelope"),                                 true},
    {kStandard, 6454, 215900,  279400,  W("NorthAmericaNote"),                              true},
    {kStandard, 6455, 101600,  152400,  W("NorthAmerica4x6"),                               true},
    {kStandard, 6456, 127000,  177800,  W("NorthAmerica5x7"),                               true},
    {kStandard, 6457, 203200,  254000,  W("NorthAmerica8x10"),                              true},
    {kStandard, 6458, 228600,  279400,  W("NorthAmerica9x11"),                              true},
    {kStandard, 6459, 254000,  279400,  W("NorthAmerica10x11"),                             true},
    {kStandard, 6460, 254000,  355600,  W("NorthAmerica10x14"),                             true},
    {kStandard, 6461, 279400,  431800,  W("NorthAmerica11x17"),                             true},
    {kStandard, 6462, 324000,  458000,  W("ISOC3Envelope"),                                 true},
    {kStandard, 6463, 229000,  324000,  W("ISOC4Envelope"),                                 true},
    {kStandard, 6464, 114000,  162000,  W("ISOC6Envelope"),                                 true},
    {kStandard, 6465, 114000,  229000,  W("ISOC6C5Envelope"),                               true},
    {kStandard, 6466, 98425,   225425,  W("NorthAmericaNumber9Envelope"),                   true},
    {kStandard, 6467, 114300,  263525,  W("NorthAmericaNumber11Envelope"),                  true},
    {kStandard, 6468, 120650,  279400,  W("NorthAmericaNumber12Envelope"),                  true},
    {kStandard, 6469, 127000,  292100,  W("NorthAmericaNumber14Envelope"),                  true},
    {kStandard, 6470, 92075,   165100,  W("NorthAmericaPersonalEnvelope"),                  true},
    {kStandard, 6471, 110000,  230000,  W("OtherMetricItalianEnvelope"),                    true},
    {kStandard, 6472, 220000,  220000,  W("OtherMetricInviteEnvelope"),                     true},
    {kStandard, 6473, 146000,  215000,  W("PRC16K"),                                        true},
    {kStandard, 6474, 97000,   151000,  W("PRC32K"),                                        true},
    {kExtended, 6445, 320000,  450000,  W("ISOSRA3"),                                       true},
    {kExtended, 6500, 225000,  320000,  W("sra4"),                                          false},
    {kExtended, 6501, 304800,  482600,  W("na-12x19"),                                      false},
    {kExtended, 6502, 330200,  482600,  W("na-13x19"),                                      false},
    {kExtended, 6503, 216000,  340000,  W("oficio"),                                        false},
    {kExtended, 6504, 270000,  390000,  W("prc-8k"),                                        false},
    {kExtended, 6505, 841000,  1189000, W("ISOA0"),                                         true},
    {kExtended, 6506, 594000,  841000,  W("ISOA1"),                                         true},
    {kExtended, 6507, 420000,  594000,  W("ISOA2"),                                         true},
    {kExtended, 6508, 74000,   105000,  W("ISOA7"),                                         true},
    {kExtended, 6509, 52000,   74000,   W("ISOA8"),                                         true},
    {kExtended, 6510, 37000,   52000,   W("ISOA9"),                                         true},
    {kExtended, 6511, 26000,   37000,   W("ISOA10"),                                        true},
    {kExtended, 6512, 322000,  445000,  W("ISOA3Extra"),                                    true},
    {kExtended, 6513, 235500,  322300,  W("ISOA4Extra"),                                    true},
    {kExtended, 6514, 174000,  235000,  W("ISOA5Extra"),                                    true},
    {kExtended, 6515, 420000,  297000,  W("ISOA3Rotated"),                                  true},
    {kExtended, 6516, 297000,  210000,  W("ISOA4Rotated"),                                  true},
    {kExtended, 6517, 210000,  148000,  W("ISOA5Rotated"),                                  true},
    {kExtended, 6518, 148000,  105000,  W("ISOA6Rotated"),                                  true},
    {kExtended, 6519, 1000000, 1414000, W("ISOB0"),                                         true},
    {kExtended, 6520, 707000,  1000000, W("ISOB1"),                                         true},
    {kExtended, 6521, 500000,  707000,  W("ISOB2"),                                         true},
    {kExtended, 6522, 353000,  500000,  W("ISOB3"),                                         true},
    {kExtended, 6523, 88000,   125000,  W("ISOB7"),                                         true},
    {kExtended, 6524, 62000,   88000,   W("ISOB8"),                                         true},
    {kExtended, 6525, 44000,   62000,   W("ISOB9"),                                         true},
    {kExtended, 6526, 31000,   44000,   W("ISOB10"),                                        true},
    {kExtended, 6527, 201000,  276000,  W("ISOB5Extra"),                                    true},
    {kExtended, 6528, 917000,  1297000, W("ISOC0"),                                         true},
    {kExtended, 6529, 648000,  917000,  W("ISOC1"),                                         true},
    {kExtended, 6530, 458000,  648000,  W("ISOC2"),                                         true},
    {kExtended, 6531, 324000,  458000,  W("ISOC3"),                                         true},
    {kExtended, 6532, 229000,  324000,  W("ISOC4"),                                         true},
    {kExtended, 6533, 162000,  229000,  W("ISOC5"),                                         true},
    {kExtended, 6534, 114000,  162000,  W("ISOC6"),                                         true},
    {kExtended, 6535, 81000,   114000,  W("ISOC7"),                                         true},
    {kExtended, 6536, 57000,   81000,   W("ISOC8"),                                         true},
    {kExtended, 6537, 40000,   57000,   W("ISOC9"),                                         true},
    {kExtended, 6538, 28000,   40000,   W("ISOC10"),                                        true},
    {kExtended, 6539, 220000,  110000,  W("ISODLEnvelopeRotated"),                          true},
    {kExtended, 6540, 1030000, 1456000, W("JISB0"),                                         true},
    {kExtended, 6541, 728000,  1030000, W("JISB1"),                                         true},
    {kExtended, 6542, 515000,  728000,  W("JISB2"),                                         true},
    {kExtended, 6543, 364000,  515000,  W("JISB3"),                                         true},
    {kExtended, 6544, 91000,   128000,  W("JISB7"),                                         true},
    {kExtended, 6545, 64000,   91000,   W("JISB8"),                                         true},
    {kExtended, 6546, 45000,   64000,   W("JISB9"),                                         true},
    {kExtended, 6547, 32000,   45000,   W("JISB10"),                                        true},
    {kExtended, 6548, 364000,  257000,  W("JISB4Rotated"),                                  true},
    {kExtended, 6549, 257000,  182000,  W("JISB5Rotated"),                                  true},
    {kExtended, 6550, 182000,  128000,  W("JISB6Rotated"),                                  true},
    {kExtended, 6551, 148000,  100000,  W("JapanHagakiPostcardRotated"),                    true},
    {kExtended, 6552, 148000,  200000,  W("JapanDoubleHagakiPostcardRotated"),              true},
    {kExtended, 6553, 200000,  296000,  W("JapanQuadrupleHagakiPostcard"),                  true},
    {kExtended, 6554, 120000,  235000,  W("JapanChou3Envelope"),                            true},
    {kExtended, 6555, 235000,  120000,  W("JapanChou3EnvelopeRotated"),                     true},
    {kExtended, 6556, 90000,   205000,  W("JapanChou4Envelope"),                            true},
    {kExtended, 6557, 205000,  90000,   W("JapanChou4EnvelopeRotated"),                     true},
    {kExtended, 6558, 240000,  332000,  W("JapanKaku2Envelope"),                            true},
    {kExtended, 6559, 332000,  240000,  W("JapanKaku2EnvelopeRotated"),                     true},
    {kExtended, 6560, 216000,  277000,  W("JapanKaku3Envelope"),                            true},
    {kExtended, 6561, 277000,  216000,  W("JapanKaku3EnvelopeRotated"),                     true},
    {kExtended, 6562, 120000,  176000,  W("JapanYou1Envelope"),                             true},
    {kExtended, 6563, 114000,  162000,  W("JapanYou2Envelope"),                             true},
    {kExtended, 6564, 98000,   148000,  W("JapanYou3Envelope"),                             true},
    {kExtended, 6565, 105000,  235000,  W("JapanYou4Envelope"),                             true},
    {kExtended, 6566, 235000,  105000,  W("JapanYou4EnvelopeRotated"),                      true},
    {kExtended, 6567, 98000,   190000,  W("JapanYou6Envelope"),                             true},
    {kExtended, 6568, 190000,  98000,   W("JapanYou6EnvelopeRotated"),                      true},
    {kExtended, 6569, 89000,   127000,  W("JapanLPhoto"),                                   true},
    {kExtended, 6570, 127000,  178000,  W("Japan2LPhoto"),                                  true},
    {kExtended, 6571, 210000,  330000,  W("OtherMetricA4Plus"),                             true},
    {kExtended, 6572, 97000,   151000,  W("PRC32KBig"),                                     true},
    {kExtended, 6573, 215000,  146000,  W("PRC16KRotated"),                                 true},
    {kExtended, 6574, 151000,  97000,   W("PRC32KRotated"),                                 true},
    {kExtended, 6575, 102000,  165000,  W("PRC1Envelope"),                                  true},
    {kExtended, 6576, 102000,  176000,  W("PRC2Envelope"),                                  true},
    {kExtended, 6577, 125000,  176000,  W("PRC3Envelope"),                                  true},
    {kExtended, 6578, 110000,  208000,  W("PRC4Envelope"),                                  true},
    {kExtended, 6579, 110000,  220000,  W("PRC5Envelope"),                                  true},
    {kExtended, 6580, 120000,  230000,  W("PRC6Envelope"),                                  true},
    {kExtended, 6581, 160000,  230000,  W("PRC7Envelope"),                                  true},
    {kExtended, 6582, 120000,  309000,  W("PRC8Envelope"),                                  true},
    {kExtended, 6583, 229000,  324000,  W("PRC9Envelope"),                                  true},
    {kExtended, 6584, 324000,  458000,  W("PRC10Envelope"),                                 true},
    {kExtended, 6585, 165000,  102000,  W("PRC1EnvelopeRotated"),                           true},
    {kExtended, 6586, 176000,  102000,  W("PRC2EnvelopeRotated"),                           true},
    {kExtended, 6587, 176000,  125000,  W("PRC3EnvelopeRotated"),                           true},
    {kExtended, 6588, 208000,  110000,  W("PRC4EnvelopeRotated"),                           true},
    {kExtended, 6589, 220000,  110000,  W("PRC5EnvelopeRotated"),                           true},
    {kExtended, 6590, 230000,  120000,  W("PRC6EnvelopeRotated"),                           true},
    {kExtended, 6591, 230000,  160000,  W("PRC7EnvelopeRotated"),                           true},
    {kExtended, 6592, 309000,  120000,  W("PRC8EnvelopeRotated"),                           true},
    {kExtended, 6593, 324000,  229000,  W("PRC9EnvelopeRotated"),                           true},
    {kExtended, 6594, 458000,  324000,  W("PRC10EnvelopeRotated"),                          true},
    {kExtended, 6595, 279400,  215900,  W("NorthAmericaLetterRotated"),                     true},
    {kExtended, 6596, 241300,  304800,  W("NorthAmericaLetterExtra"),                       true},
    {kExtended, 6597, 215900,  322326,  W("NorthAmericaLetterPlus"),                        true},
    {kExtended, 6598, 241300,  381000,  W("NorthAmericaLegalExtra"),                        true},
    {kExtended, 6599, 296926,  457200,  W("NorthAmericaTabloidExtra"),                      true},
    {kExtended, 6600, 241300,  104775,  W("NorthAmericaNumber10EnvelopeRotated"),           true},
    {kExtended, 6601, 101600,  203200,  W("NorthAmerica4x8"),                               true},
    {kExtended, 6602, 254000,  304800,  W("NorthAmerica10x12"),                             true},
    {kExtended, 6603, 355600,  431800,  W("NorthAmerica14x17"),                             true},
    {kExtended, 6604, 215900,  304800,  W("NorthAmericaGermanStandardFanfold"),             true},
    {kExtended, 6605, 215900,  330200,  W("NorthAmericaGermanLegalFanfold"),                true},
    {kExtended, 6606, 228600,  304800,  W("NorthAmericaArchitectureASheet"),                true},
    {kExtended, 6607, 304800,  457200,  W("NorthAmericaArchitectureBSheet"),                true},
    {kExtended, 6608, 457200,  609600,  W("NorthAmericaArchitectureCSheet"),                true},
    {kExtended, 6609, 609600,  914400,  W("NorthAmericaArchitectureDSheet"),                true},
    {kExtended, 6610, 914400,  1219200, W("NorthAmericaArchitectureESheet"),                true},
    {kExtended, 6611, 431800,  558800,  W("NorthAmericaCSheet"),                            true},
    {kExtended, 6612, 558800,  863600,  W("NorthAmericaDSheet"),                            true},
    {kExtended, 6613, 863600,  1117600, W("NorthAmericaESheet"),                            true},
    {kExtended, 6614, 227000,  356000,  W("NorthAmericaSuperA"),                            true},
    {kExtended, 6615, 305000,  487000,  W("NorthAmericaSuperB"),                            true},
};
// clang-format on

// Null when the table has no such value.
constexpr const PageSizeRow* FindRow(std::int32_t valueId) noexcept
{
    for (const PageSizeRow& row : kRows)
        if (row.valueId == valueId)
            return &row;
    return nullptr;
}

} // namespace PageSizeTable
