// Image files: the image-reader interface, LoadImageFile (the reader is chosen by the
// file's extension among the registered readers), ReadWholeFile, and the stream holder
// the readers share. Readers never read or write outside a buffer and refuse sizes that
// would overflow or that the file cannot hold, before allocating anything.
#pragma once

#include <cstdint>

#include "FrameWork/_cult/Source/clt_ComponentRegistry.h"
#include "FrameWork/_cult/Source/clt_FileStream.h"
#include "FrameWork/_cult/Source/clt_Image.h"
#include "FrameWork/_cult/Source/clt_MemoryBlock.h"

class CltImageLoader
{
  public:
    // Zero-terminated extensions, ended by an empty string.
    virtual const char* GetExtensions() = 0;
    virtual bool Load(const CltGuid& streamId, CltImage& image, const char* fileName) = 0;
    virtual bool Save(const CltGuid& streamId, const CltImage& image, const char* fileName) = 0;

  protected:
    ~CltImageLoader() = default;
};

bool LoadImageFile(const CltGuid& streamId, CltImage& image, const char* fileName);
// The whole file in a new memory block, followed by two zero bytes (the block is two bytes
// longer than the file); none for a missing or empty file. The caller releases the block.
CltMemoryBlock* ReadWholeFile(const CltGuid& streamId, const char* fileName);

// A file stream made through the registry and opened for reading binary. The destructor
// closes an opened stream and destroys it, each exactly once.
class CltReadStream
{
  public:
    CltReadStream(const CltGuid& streamId, const char* fileName);
    ~CltReadStream();
    CltReadStream(const CltReadStream&) = delete;
    CltReadStream& operator=(const CltReadStream&) = delete;

    bool IsOpen() const { return m_bOpen; }
    // Reads exactly n bytes, or fails.
    bool ReadExactly(void* buffer, uint64_t n);
    // Reads the image's rows in stored order: rowBytes of pixels each, followed in the file
    // by gap bytes of padding (at most 3). In one piece when the file's rows match the
    // image's pitch.
    bool ReadRows(CltImage& image, uint64_t rowBytes, uint32_t gap);
    bool Skip(uint64_t n);
    // Bytes from the current position to the end of the file; -1 when unknown.
    int64_t Remaining();
    // Bytes of the whole file; -1 when unknown.
    int64_t Size();

  private:
    CltFileStream* m_pStream = nullptr;
    bool m_bOpen = false;
};

// A component that offers an image reader.
class CltImageReaderComponent : public CltComponent
{
  public:
    CltImageReaderComponent(const CltGuid& id, CltImageLoader& loader);
    bool CreateInstance(void** out) override;
    bool GetInterface(void** out) override;

  private:
    CltImageLoader& m_Loader;
};
