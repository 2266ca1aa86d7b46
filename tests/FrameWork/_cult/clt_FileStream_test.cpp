// CltFileStream mode words and seeking, CltMemoryBlock's lock rules.
#include "FrameWork/_cult/Source/clt_FileStream.h"
#include "FrameWork/_cult/Source/clt_MemoryBlock.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <string>

TEST(CltFileStream, WritesReadsAndSeeksFromTheEnd)
{
    std::string path = testing::TempDir() + "clt_filestream.bin";
    CltFileStream prototype;
    CltFileStream* out = prototype.New();
    ASSERT_TRUE(out->Open(path.c_str(), 2));
    EXPECT_EQ(out->Write("0123456789", 1, 10), 10u);
    EXPECT_EQ(out->Close(), 0);
    EXPECT_TRUE(out->Open(path.c_str(), 6)); // append keeps the contents
    EXPECT_EQ(out->Write("ab", 2, 1), 1u);
    out->Release();

    CltFileStream in;
    EXPECT_FALSE(in.Open(path.c_str(), 0x100));
    ASSERT_TRUE(in.Open(path.c_str(), 0x201));
    EXPECT_FALSE(in.Open(path.c_str(), 0x201)); // already open
    EXPECT_EQ(in.Seek(0, 1), 0);
    EXPECT_EQ(in.Tell(), 12);
    EXPECT_EQ(in.Seek(-4, 1), 0);
    char buffer[8] = {};
    EXPECT_EQ(in.Read(buffer, 2, 3), 2u); // whole items only
    EXPECT_STREQ(buffer, "89ab");
    EXPECT_EQ(in.Seek(2, 0), 0);
    EXPECT_EQ(in.Seek(1, 2), 0);
    EXPECT_EQ(in.Tell(), 3);
    EXPECT_NE(in.Seek(0, 3), 0);
    in.Close();
    EXPECT_EQ(in.Read(buffer, 1, 1), 0u);
    remove(path.c_str());
}

TEST(CltMemoryBlock, LockedBlocksAreNeitherFreedNorResized)
{
    CltMemoryBlock block;
    EXPECT_EQ(block.Lock(), nullptr); // empty: nothing to lock
    EXPECT_EQ(block.LockCount(), 0u);
    EXPECT_FALSE(block.Realloc(8));
    ASSERT_TRUE(block.Alloc(16));
    EXPECT_FALSE(block.Alloc(32)); // already holds data
    EXPECT_EQ(block.GetSize(), 16u);
    auto* data = static_cast<char*>(block.Lock());
    ASSERT_NE(data, nullptr);
    data[0] = 'k';
    EXPECT_FALSE(block.Realloc(64));
    block.Free();
    EXPECT_EQ(block.GetSize(), 16u);
    EXPECT_EQ(static_cast<char*>(block.Unlock())[0], 'k');
    EXPECT_TRUE(block.Realloc(64));
    EXPECT_EQ(static_cast<char*>(block.Lock())[0], 'k');
    block.Unlock();
    block.Free();
    EXPECT_EQ(block.GetSize(), 0u);
    EXPECT_EQ(block.Lock(), nullptr);
    EXPECT_TRUE(block.Alloc(4));
}
