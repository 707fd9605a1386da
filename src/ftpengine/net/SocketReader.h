#pragma once

#include <list>
#include <memory>

#include "common/ThreadSafety.h"
#include "ftpengine/messages/FTPReply.h"
#include "ftpengine/net/Event.h"
#include "ftpengine/net/FTPTimeouts.h"
#include "ftpengine/net/Socket.h"
#include "ftpengine/net/SocketBuffer.h"

// The reading half of a control connection: its reader thread cuts what arrives into chunks, the task's
// thread takes them. Shared by the two, so that it outlives the stream if the reader should.
class CSocketReader {
public:
    CSocketReader(CSocket socket, std::chrono::milliseconds segmentSilence);

    // The reader thread's body: reads until the connection is closed or broken, or RequestEnd.
    void Run();
    void RequestEnd() { ending.Set(); }

    // Signalled while a chunk, or a failure, is waiting.
    const CEvent& GetDataEvent() const { return dataEvent; }

    // The oldest chunk. Throws the reader's failure, even if chunks are waiting: they are never delivered;
    // and 10054 if the peer has closed and all is taken. To be called when the data event is signalled.
    CSocketBuffer TakeChunk();

    // The task's thread sends on it.
    CSocket& GetSocket() { return socket; }

private:
    void ReceiveCycle(CSocketBuffer& buffer);
    std::size_t ReceiveOnce(CSocketBuffer& buffer, CReplyLines& lines);
    void Append(const CSocketBuffer& chunk);
    void Fail(int error);
    void WaitForRoom();

    // Constant after construction.
    CSocket socket;
    const std::chrono::milliseconds segmentSilence;

    // Safe for both threads.
    CEvent dataEvent;
    CEvent roomEvent; // signalled while another chunk may be queued
    CEvent ending;

    // Reader thread only.
    bool peerClosed = false;

    // The two events of the queue are changed with it held only.
    CMutex queueLock;
    std::list<CSocketBuffer> chunks VISTORAMA_GUARDED_BY(queueLock);
    int status VISTORAMA_GUARDED_BY(queueLock) = 0;     // the reader's failure; once set it stays
    bool ended VISTORAMA_GUARDED_BY(queueLock) = false; // no chunk will follow
};
