// CltIndexList, CltHashMap and CltRect.
#include "FrameWork/_cult/Source/clt_HashMap.h"
#include "FrameWork/_cult/Source/clt_IndexList.h"
#include "FrameWork/_cult/Source/clt_Rect.h"

#include <gtest/gtest.h>

#include <vector>

namespace
{
template <typename T> std::vector<T> Walk(const CltIndexList<T>& list)
{
    std::vector<T> out;
    for (int32_t i = list.Head(); i != -1; i = list.Next(i))
        out.push_back(list.Element(i));
    return out;
}
} // namespace

TEST(CltIndexList, GrowsBy256KeepsIndicesAndReusesFreedSlots)
{
    CltIndexList<int> list;
    EXPECT_EQ(list.Head(), -1);
    EXPECT_EQ(list.Tail(), -1);
    std::vector<int32_t> index;
    for (int v = 0; v < 300; ++v)
        index.push_back(list.PushBack(v));
    EXPECT_EQ(list.Capacity(), 512u);
    EXPECT_EQ(index[299], 299);
    list.Remove(index[0]);
    list.Remove(index[150]);
    list.Remove(index[299]);
    EXPECT_EQ(list.Element(list.Head()), 1);
    EXPECT_EQ(list.Element(list.Tail()), 298);
    // The most recently freed slot is taken first.
    EXPECT_EQ(list.PushFront(-1), index[299]);
    EXPECT_EQ(list.InsertAfter(index[149], 1000), index[150]);
    std::vector<int> walked = Walk(list);
    ASSERT_EQ(walked.size(), 299u);
    EXPECT_EQ(walked[0], -1);
    EXPECT_EQ(walked[149], 149);
    EXPECT_EQ(walked[150], 1000);
    EXPECT_EQ(walked[151], 151);
    EXPECT_EQ(list.Prev(index[151]), index[150]);
}

TEST(CltHashMap, IteratesBucketsInOrderAndKeysInInsertionOrder)
{
    using Map = CltHashMap<CltString, CltString, CltStringKeyTraits>;
    Map map(1024);
    // Find a key that lands in bucket 720 and two more that share one bucket.
    CltString in720;
    for (int i = 0; in720.empty(); ++i)
    {
        CltString k;
        k.format("K%d", i);
        if (map.BucketOf(k) == 720) in720 = k;
    }
    map.Set(in720, "v");
    std::vector<std::string> keys;
    map.ForEach([&](const CltString& k, const CltString&) { keys.push_back(k.c_str()); });
    EXPECT_EQ(keys, std::vector<std::string>{in720.c_str()});

    // "BA" and "Ab" differ in two places that cancel in h*33+c: 'B'*33+'A' = 'A'*33+'b'.
    ASSERT_EQ(CltStringKeyTraits::Hash("BA"), CltStringKeyTraits::Hash("Ab"));
    map.Set("BA", "1");
    map.Set("Ab", "2");
    map.Set("BA", "3"); // replacing keeps the place
    keys.clear();
    std::vector<std::string> values;
    map.ForEach(
        [&](const CltString& k, const CltString& v)
        {
            keys.push_back(k.c_str());
            values.push_back(v.c_str());
        });
    ASSERT_EQ(keys.size(), 3u);
    EXPECT_EQ(keys[0], "BA");
    EXPECT_EQ(keys[1], "Ab");
    EXPECT_EQ(values[0], "3");
    EXPECT_EQ(map.Lowest(), 0);
    EXPECT_EQ(map.Highest(), 720);
    map.Clear();
    EXPECT_EQ(map.Lowest(), -1);
    EXPECT_EQ(map.Find("BA"), nullptr);
}

