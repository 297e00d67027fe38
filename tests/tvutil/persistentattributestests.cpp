// Persistent attributes, from the state's bytes to the typed values and back.
#include <windows.h>

#include <gtest/gtest.h>

#include <tvutil/attributebytesindexedlist.h>
#include <tvutil/attributebytesreader.h>
#include <tvutil/globalcaches.h>
#include <tvutil/persistentattributes.h>

namespace
{

TEST(PersistentAttributes, BringBackWhatWasSet)
{
    constexpr auto kDocProp = PersistentAttributes::GetDataModelDocPropNameSpaceId();
    AttributeBytesIndexedList list;
    list.SetAttributeBytes(8, MakeStringAttributeBytes(W("Otto")));
    list.SetAttributeBytes(7, AttributeBytesOptionValue(AttributeBytesValueId(5420), true));
    AttributeBytesRawList raw;
    raw.ImportFromIndexedList(list);
    AttributeBytesNameSpaces nameSpaces;
    nameSpaces.SetAttributeBytesList(kDocProp, raw);
    PersistentAttributes written;
    ASSERT_TRUE(written.SetAttributeBytesNameSpaces(nameSpaces));

    const PersistentAttributes read(written.GetPersistentAttributesState());
    AttributeBytesIndexedList back;
    back.SetIndexed(true);
    ASSERT_TRUE(back.ImportFromRawList(read.GetAttributeBytesListForNameSpace(kDocProp)));
    EXPECT_EQ(AttributeBytesReader::GetStringValueFromAttributeBytes(back, 8), CXString(W("Otto")));
    EXPECT_EQ(AttributeBytesReader::GetOptionValueFromAttributeBytes(back, 7)->GetValueId(), 5420);

    GlobalCaches::AddXDevmodeAttributeBytesIndexedListCacheEntry(GlobalCaches::kDocPropListCacheName, kDocProp, 17,
                                                                 back);
    AttributeBytesIndexedList cached;
    EXPECT_TRUE(GlobalCaches::CheckXDevmodeAttributeBytesIndexedListCache(kDocProp, 17, cached));
    cached.RemoveAttributeBytes(7);
    EXPECT_EQ(cached.GetCount(), 1u);
    EXPECT_EQ(back.GetCount(), 2u);
}

} // namespace
