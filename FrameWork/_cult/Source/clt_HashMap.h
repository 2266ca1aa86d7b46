// CltHashMap: a hash map with a fixed bucket count, each bucket a CltIndexList of
// key-value pairs created when a key first lands in it. Iteration visits buckets in
// ascending index and, within a bucket, keys in the order they were first set
// (replacing a value keeps its place). Entries are not removed one by one.
#pragma once

#include "FrameWork/_cult/Source/clt_IndexList.h"
#include "FrameWork/_cult/Source/clt_String.h"

#include <cstring>

// Keys of CltString: the hash is h = h * 33 + byte over the bytes taken as signed
// 8-bit values, modulo 2^32; an empty key never equals any key.
struct CltStringKeyTraits
{
    static uint32_t Hash(const CltString& key)
    {
        uint32_t h = 0;
        for (const char* p = key.c_str(); *p; ++p)
            h = h * 33u + static_cast<uint32_t>(static_cast<int32_t>(static_cast<signed char>(*p)));
        return h;
    }
    static bool Equal(const CltString& a, const CltString& b) { return a == b; }
};

// 16-byte identifiers: the hash is the first 32-bit word; keys compare by all 16 bytes.
struct CltGuid
{
    uint8_t bytes[16];
};
struct CltGuidKeyTraits
{
    static uint32_t Hash(const CltGuid& key)
    {
        uint32_t h;
        memcpy(&h, key.bytes, 4);
        return h;
    }
    static bool Equal(const CltGuid& a, const CltGuid& b)
    {
        return memcmp(a.bytes, b.bytes, 16) == 0;
    }
};

template <typename K, typename V, typename Traits> class CltHashMap
{
  public:
    struct Pair
    {
        K key;
        V value;
    };
    using Bucket = CltIndexList<Pair>;

    explicit CltHashMap(uint32_t bucketCount) : m_count(bucketCount)
    {
        m_ppBuckets = new Bucket*[bucketCount]();
        m_ppBuckets[0] = new Bucket;
        m_lowest = m_highest = 0;
    }
    ~CltHashMap() { Clear(); }
    CltHashMap(const CltHashMap&) = delete;
    CltHashMap& operator=(const CltHashMap&) = delete;

    uint32_t BucketOf(const K& key) const { return Traits::Hash(key) % m_count; }

    void Set(const K& key, const V& value)
    {
        if (!m_ppBuckets) return;
        uint32_t b = BucketOf(key);
        if (V* found = Find(key))
        {
            *found = value;
            return;
        }
        if (!m_ppBuckets[b])
        {
            m_ppBuckets[b] = new Bucket;
            if (m_lowest == -1 || int32_t(b) < m_lowest) m_lowest = int32_t(b);
            if (m_highest == -1 || int32_t(b) > m_highest) m_highest = int32_t(b);
        }
        m_ppBuckets[b]->PushBack(Pair{key, value});
    }

    V* Find(const K& key) const
    {
        if (!m_ppBuckets) return nullptr;
        Bucket* bucket = m_ppBuckets[BucketOf(key)];
        if (!bucket) return nullptr;
        for (int32_t i = bucket->Head(); i != -1; i = bucket->Next(i))
            if (Traits::Equal(bucket->Element(i).key, key)) return &bucket->Element(i).value;
        return nullptr;
    }

    template <typename F> void ForEach(F visit) const
    {
        if (!m_ppBuckets || m_lowest < 0) return;
        for (int32_t b = m_lowest; b <= m_highest; ++b)
        {
            const Bucket* bucket = m_ppBuckets[b];
            if (!bucket) continue;
            for (int32_t i = bucket->Head(); i != -1; i = bucket->Next(i))
                visit(bucket->Element(i).key, bucket->Element(i).value);
        }
    }

    void Clear()
    {
        if (m_ppBuckets)
        {
            for (uint32_t b = 0; b < m_count; ++b)
                delete m_ppBuckets[b];
            delete[] m_ppBuckets;
            m_ppBuckets = nullptr;
        }
        m_lowest = m_highest = -1;
    }

    int32_t Lowest() const { return m_lowest; }
    int32_t Highest() const { return m_highest; }

  private:
    Bucket** m_ppBuckets = nullptr;
    int32_t m_lowest = -1;
    int32_t m_highest = -1;
    uint32_t m_count;
};
