// CltFileStream (portable; see clt_FileStream.h).
#include "FrameWork/_cult/Source/clt_FileStream.h"

const char* CltFileStream::ModeText(uint32_t mode, char out[4])
{
    bool read = mode & kRead, write = mode & kWrite, keep = mode & kKeep;
    size_t n = 0;
    if (read && write)
    {
        out[n++] = keep ? 'r' : 'w';
        out[n++] = '+';
    }
    else if (write)
        out[n++] = keep ? 'a' : 'w';
    else if (read)
        out[n++] = 'r';
    else
        return nullptr;
    out[n++] = (mode & kText) ? 't' : 'b';
    out[n] = 0;
    return out;
}

int CltFileStream::Open(const char* name, uint32_t mode)
{
    char text[4];
    if (m_pFile || !name || !ModeText(mode, text)) return 0;
    m_pFile = fopen(name, text);
    return m_pFile != nullptr;
}

int CltFileStream::Close()
{
    if (!m_pFile) return EOF;
    int rc = fclose(m_pFile);
    m_pFile = nullptr;
    return rc;
}

size_t CltFileStream::Read(void* buffer, size_t itemSize, size_t count)
{
    return m_pFile ? fread(buffer, itemSize, count, m_pFile) : 0;
}

size_t CltFileStream::Write(const void* buffer, size_t itemSize, size_t count)
{
    return m_pFile ? fwrite(buffer, itemSize, count, m_pFile) : 0;
}

int CltFileStream::Seek(int32_t offset, int origin)
{
    static const int kOrigins[] = {SEEK_SET, SEEK_END, SEEK_CUR};
    if (!m_pFile || origin < 0 || origin > 2) return -1;
    return fseek(m_pFile, offset, kOrigins[origin]);
}

long CltFileStream::Tell()
{
    return m_pFile ? ftell(m_pFile) : -1;
}

CltFileStream* CltFileStream::New()
{
    return new CltFileStream;
}

void CltFileStream::Release()
{
    delete this;
}

CltFileStream::~CltFileStream()
{
    Close();
}
