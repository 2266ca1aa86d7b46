// LoadImageFile, ReadWholeFile and the readers' stream holder.
#include "FrameWork/_cult/Source/clt_ImageFile.h"

#include <cstring>

#include "FrameWork/_cult/Source/clt_Text.h"

namespace
{
// Extensions compare without regard to case, in the Western ANSI code page.
bool SameExtension(const char* a, const char* b)
{
    for (;; ++a, ++b)
    {
        unsigned char x = clt_PortableUpperChar(static_cast<unsigned char>(*a));
        if (x != clt_PortableUpperChar(static_cast<unsigned char>(*b))) return false;
        if (!x) return true;
    }
}
} // namespace

bool LoadImageFile(const CltGuid& streamId, CltImage& image, const char* fileName)
{
    const char* dot = strrchr(fileName, '.');
    const char* extension = dot ? dot + 1 : fileName;
    uint32_t count = 0;
    CltComponent** readers = g_ComponentRegistry.ListCategory(CLTCAT_ImageReader, &count);
    CltImageLoader* chosen = nullptr;
    for (uint32_t i = 0; i < count && !chosen; ++i)
    {
        void* loader = nullptr;
        if (!readers[i]->GetInterface(&loader) || !loader) continue;
        CltImageLoader* reader = static_cast<CltImageLoader*>(loader);
        for (const char* e = reader->GetExtensions(); *e; e += strlen(e) + 1)
            if (SameExtension(e, extension))
            {
                chosen = reader;
                break;
            }
    }
    delete[] readers;
    if (chosen && chosen->Load(streamId, image, fileName)) return true;
    image.Clear(); // a refused image is wholly empty, whatever a reader had made of it
    return false;
}

CltMemoryBlock* ReadWholeFile(const CltGuid& streamId, const char* fileName)
{
    CltReadStream stream(streamId, fileName);
    if (!stream.IsOpen()) return nullptr;
    int64_t size = stream.Size();
    if (size <= 0 || size > int64_t(UINT32_MAX) - 2) return nullptr;
    void* made = nullptr;
    if (!g_ComponentRegistry.CreateInstance(CLTCAT_MemoryBlock, CLTID_MemoryBlock, &made))
        return nullptr;
    CltMemoryBlock* block = static_cast<CltMemoryBlock*>(made);
    if (!block->Alloc(uint32_t(size) + 2))
    {
        block->Release();
        return nullptr;
    }
    uint8_t* data = static_cast<uint8_t*>(block->Lock());
    bool read = stream.ReadExactly(data, uint64_t(size));
    data[size] = 0;
    data[size + 1] = 0;
    block->Unlock();
    if (!read)
    {
        block->Release();
        return nullptr;
    }
    return block;
}

CltReadStream::CltReadStream(const CltGuid& streamId, const char* fileName)
{
    void* made = nullptr;
    if (!g_ComponentRegistry.CreateInstance(CLTCAT_FileStream, streamId, &made)) return;
    m_pStream = static_cast<CltFileStream*>(made);
    m_bOpen = m_pStream->Open(fileName, 0x201) != 0;
}

CltReadStream::~CltReadStream()
{
    if (!m_pStream) return;
    if (m_bOpen) m_pStream->Close();
    m_pStream->Release();
}

bool CltReadStream::ReadExactly(void* buffer, uint64_t n)
{
    if (n == 0) return true;
    return m_bOpen && n <= SIZE_MAX && m_pStream->Read(buffer, size_t(n), 1) == 1;
}

bool CltReadStream::ReadRows(CltImage& image, uint64_t rowBytes, uint32_t gap)
{
    uint8_t padding[3];
    if (gap > sizeof padding) return false;
    if (uint64_t(image.m_nPitch) == rowBytes + gap)
        return ReadExactly(image.m_pData, (rowBytes + gap) * uint64_t(image.m_nHeight));
    for (int32_t r = 0; r < image.m_nHeight; ++r)
        if (!ReadExactly(image.m_pData + intptr_t(r) * image.m_nPitch, rowBytes) ||
            !ReadExactly(padding, gap))
            return false;
    return true;
}

bool CltReadStream::Skip(uint64_t n)
{
    int64_t left = Remaining();
    if (left < 0 || n > uint64_t(left)) return false;
    return m_pStream->Seek(int32_t(n), 2) == 0;
}

int64_t CltReadStream::Remaining()
{
    if (!m_bOpen) return -1;
    long here = m_pStream->Tell();
    int64_t size = Size();
    if (here < 0 || size < 0) return -1;
    return size - here;
}

int64_t CltReadStream::Size()
{
    if (!m_bOpen) return -1;
    long here = m_pStream->Tell();
    if (here < 0 || m_pStream->Seek(0, 1) != 0) return -1;
    long end = m_pStream->Tell();
    if (m_pStream->Seek(int32_t(here), 0) != 0) return -1;
    return end;
}

CltImageReaderComponent::CltImageReaderComponent(const CltGuid& id, CltImageLoader& loader)
    : CltComponent(CLTCAT_ImageReader, id), m_Loader(loader)
{
    g_ComponentRegistry.Register(this);
}

bool CltImageReaderComponent::CreateInstance(void** out)
{
    *out = nullptr;
    return false;
}

bool CltImageReaderComponent::GetInterface(void** out)
{
    *out = &m_Loader;
    return true;
}
