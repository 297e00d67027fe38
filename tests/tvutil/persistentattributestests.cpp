// Persistent attributes, from the bytes of a state to typed values and back, whoever wrote them.
#include <windows.h>

#include <cctype>
#include <fstream>
#include <optional>
#include <sstream>
#include <tuple>

#include <gtest/gtest.h>

#include <tvutil/persistentattributes.h>

#include "tests/common/testfolders.h"
#include "tests/tvutil/attributebytessamples.h"

namespace
{

constexpr auto kDocProp = PersistentAttributes::GetDataModelDocPropNameSpaceId();
constexpr AttributeBytesNameSpacesId kUnknown(0x7A7A7A7A);

AttributeBytesNameSpaces Only(AttributeBytesNameSpacesId id, const ByteBuffer& list)
{
    AttributeBytesNameSpaces nameSpaces;
    nameSpaces.SetAttributeBytesList(id, AttributeBytesRawList(list.bytes()));
    return nameSpaces;
}

ByteBuffer ListOf(const PersistentAttributes& attributes, AttributeBytesNameSpacesId id)
{
    return ByteBuffer(attributes.GetAttributeBytesListForNameSpace(id).GetBytes());
}

// The hexadecimal bytes at the head of each line of the page's last block.
ByteBuffer ExampleOfThePage()
{
    std::ifstream page(TestDataFolder() / "../../docs/devmode-format.md");
    ByteBuffer bytes;
    bool isExample = false;
    for (std::string line; std::getline(page, line);)
    {
        isExample = isExample || line == "## An example";
        std::istringstream words(isExample ? line : "");
        for (std::string word; words >> word && word.size() == 2 && std::isxdigit(word[0]) && std::isxdigit(word[1]);)
            bytes.append(Bytes({std::stoi(word, nullptr, 16)}).bytes());
    }
    return bytes;
}

TEST(PersistentAttributes, AreWhatTheirPageSays)
{
    AttributeBytesIndexedList media;
    media.SetAttributeBytes(175, AttributeBytesOptionValue(AttributeBytesNewValueId(10001, W("Red")), true));
    AttributeBytesIndexedList settings;
    settings.SetAttributeBytes(46, AttributeBytesOptionValue(AttributeBytesValueId(5421), true));
    AttributeBytesIndexedList page;
    page.SetAttributeBytes(210, AttributeBytesListValue(RawListOf(media)));
    settings.SetAttributeBytes(477, AttributeBytesListValue(RawListOf(page)));
    PersistentAttributes written(DWORD{0x0100});
    ASSERT_TRUE(written.SetAttributeBytesNameSpaces(Only(kDocProp, BytesOf(settings))));

    const ByteBuffer& state = written.GetPersistentAttributesState();
    EXPECT_EQ(Hex(state), Hex(ExampleOfThePage()));
    EXPECT_EQ(written.GetDriverVersion(), 0x0100u);
}

// A header of a later revision, namespaces that nobody knows, and one that stands twice: all of it is kept.
TEST(PersistentAttributes, KeepWhatTheyDoNotKnowThroughAnEdit)
{
    const auto state = [](BYTE driverVersion, const std::vector<int>& docProp)
    {
        const std::vector<int> header = {0, 0, 0, 0, 0x37, 1, 14, 0, driverVersion, 0, 0, 0, 0xEE, 0xEF};
        const std::vector<int> unknown = {0x7A, 0x7A, 0x7A, 0x7A, 3, 0, 0, 0, 9, 8, 7};
        const std::vector<int> document = {1, 0, 0, 0, static_cast<int>(docProp.size()), 0, 0, 0};
        const std::vector<int> againAndEmpty = {1, 0, 0, 0, 1, 0, 0, 0, 0x55, 2, 0, 0, 0, 0, 0, 0, 0};
        ByteBuffer bytes;
        for (const std::vector<int>& part : {header, unknown, document, docProp, againAndEmpty})
            bytes.append(Bytes(part).bytes());
        bytes.data()[0] = static_cast<BYTE>(bytes.size());
        return bytes;
    };
    ByteBuffer stored = state(5, {1, 2});
    const std::size_t size = stored.size();
    stored.append("behind", 6); // does not belong to it

    for (const std::optional<DWORD> version : {std::optional<DWORD>(), std::optional(DWORD{6})})
    {
        PersistentAttributes attributes(stored, version);
        EXPECT_EQ(Hex(attributes.GetPersistentAttributesState()), Hex(state(5, {1, 2}))) << "unchanged";
        EXPECT_EQ(attributes.GetDriverVersion(), 5u);
        EXPECT_EQ(ListOf(attributes, kUnknown), Bytes({9, 8, 7}));
        EXPECT_EQ(ListOf(attributes, kDocProp), Bytes({1, 2}));

        ASSERT_TRUE(attributes.SetAttributeBytesNameSpaces(Only(kDocProp, Bytes({3, 4, 5}))));
        EXPECT_EQ(Hex(attributes.GetPersistentAttributesState()), Hex(state(version ? 6 : 5, {3, 4, 5})));
        ASSERT_TRUE(attributes.SetAttributeBytesNameSpaces(Only(AttributeBytesNameSpacesId(-1), Bytes({7}))));
        EXPECT_EQ(ListOf(attributes, AttributeBytesNameSpacesId(-1)), Bytes({7}));
        EXPECT_EQ(attributes.GetPersistentAttributesState().size(), size + 1 + 9) << "appended";
    }
}

TEST(PersistentAttributes, ThatCannotBeReadAreReplacedUnlessALaterDriverWroteThem)
{
    const std::tuple<const char*, std::vector<int>, bool> cases[] = {
        {"nothing", {}, false},
        {"a size below the header's", {11, 0, 0, 0, 0, 1, 12, 0, 0, 0, 0, 0}, false},
        {"a size beyond the bytes", {13, 0, 0, 0, 0, 1, 12, 0, 0, 0, 0, 0}, false},
        {"a header too short", {12, 0, 0, 0, 0, 1, 4, 0, 0, 0, 0, 0}, false},
        {"a header beyond the state", {12, 0, 0, 0, 0, 1, 13, 0, 0, 0, 0, 0, 0}, false},
        {"a namespace too long", {20, 0, 0, 0, 0, 1, 12, 0, 0, 0, 0, 0, 1, 0, 0, 0, 1, 0, 0, 0, 9}, false},
        {"an earlier format", {12, 0, 0, 0, 0, 0, 12, 0, 0, 0, 0, 0}, false},
        {"a later format", {12, 0, 0, 0, 0, 2, 12, 0, 0, 0, 0, 0}, true},
        {"a later format that runs past its end", {7, 0, 0, 0, 0, 2}, false},
    };
    for (const auto& [what, bytes, isKept] : cases)
    {
        SCOPED_TRACE(what);
        PersistentAttributes attributes(Bytes(bytes), DWORD{7});
        EXPECT_EQ(attributes.GetDriverVersion(), 0u);
        EXPECT_TRUE(ListOf(attributes, kDocProp).empty());
        EXPECT_EQ(attributes.SetAttributeBytesNameSpaces(Only(kDocProp, Bytes({1}))), !isKept);
        EXPECT_EQ(Hex(attributes.GetPersistentAttributesState()),
                  Hex(Bytes(isKept ? bytes : std::vector<int>{21, 0, 0, 0, 0, 1, 12, 0, 7, 0, 0, 0, //
                                                              1,  0, 0, 0, 1, 0, 0,  0, 1})));
    }
}

} // namespace
