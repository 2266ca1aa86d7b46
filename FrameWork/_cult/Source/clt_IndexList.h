// CltIndexList: a doubly linked list kept in one growable array of slots.
//
// Elements are addressed by slot index; an index stays valid until its element is
// removed. Freed slots are chained through their next index and reused first. The
// array grows by 256 slots at a time (or to the needed index if that is larger), and
// elements are copied into the new array (so strings are shared, not duplicated).
#pragma once

#include <cstdint>
#include <cstdlib>

template <typename T> class CltIndexList
{
  public:
    struct Slot
    {
        T element;
        int32_t next;
        int32_t prev;
    };

    CltIndexList() = default;
    ~CltIndexList() { delete[] m_pSlots; }
    CltIndexList(const CltIndexList&) = delete;
    CltIndexList& operator=(const CltIndexList&) = delete;

    int32_t Head() const { return m_head; }
    int32_t Tail() const { return m_tail; }
    int32_t Next(int32_t i) const { return m_pSlots[i].next; }
    int32_t Prev(int32_t i) const { return m_pSlots[i].prev; }
    T& Element(int32_t i) { return m_pSlots[i].element; }
    const T& Element(int32_t i) const { return m_pSlots[i].element; }
    bool IsEmpty() const { return m_head == -1; }
    uint32_t Capacity() const { return m_capacity; }

    // Stores the element in a slot linked after p (p = -1: at the head); returns its index.
    int32_t InsertAfter(int32_t p, const T& element)
    {
        int32_t i;
        if (m_free != -1)
        {
            i = m_free;
            m_free = m_pSlots[i].next;
        }
        else
        {
            i = static_cast<int32_t>(m_size);
            if (m_size >= m_capacity) Grow(m_size + 1);
            m_size = static_cast<uint32_t>(i) + 1;
        }
        Slot& s = m_pSlots[i];
        s.element = element;
        s.prev = p;
        s.next = (p == -1) ? m_head : m_pSlots[p].next;
        if (p == -1)
            m_head = i;
        else
            m_pSlots[p].next = i;
        if (s.next == -1)
            m_tail = i;
        else
            m_pSlots[s.next].prev = i;
        return i;
    }
    int32_t PushBack(const T& element) { return InsertAfter(m_tail, element); }
    int32_t PushFront(const T& element) { return InsertAfter(-1, element); }

    // Unlinks slot i, clears its element and puts the slot on the free chain.
    void Remove(int32_t i)
    {
        Slot& s = m_pSlots[i];
        if (s.prev == -1)
            m_head = s.next;
        else
            m_pSlots[s.prev].next = s.next;
        if (s.next == -1)
            m_tail = s.prev;
        else
            m_pSlots[s.next].prev = s.prev;
        s.element = T();
        s.prev = -1;
        s.next = m_free;
        m_free = i;
    }

  private:
    void Grow(uint32_t needed)
    {
        uint32_t capacity = m_capacity + kGrowBy;
        if (capacity < needed) capacity = needed;
        Slot* slots = new Slot[capacity]();
        for (uint32_t k = 0; k < m_size; ++k)
            slots[k] = m_pSlots[k];
        delete[] m_pSlots;
        m_pSlots = slots;
        m_capacity = capacity;
    }

    static constexpr uint32_t kGrowBy = 256;
    Slot* m_pSlots = nullptr;
    uint32_t m_capacity = 0;
    uint32_t m_size = 0;
    int32_t m_head = -1;
    int32_t m_tail = -1;
    int32_t m_free = -1;
};
