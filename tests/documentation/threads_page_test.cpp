// SPDX-License-Identifier: MIT
// The recipes of docs/threads.md.

#include "PageSamples.h"

#include <atomic>
#include <mutex>
#include <thread>
#include <vector>

using namespace testing_support;

namespace {

//! [a shared record]
// The newest document, for any number of threads.
class Latest
{
public:
    void Set(const PelLu300RouterInterfaceXml& document)
    {
        const std::lock_guard lock(m_mutex);
        m_document = document;
    }

    void Get(PelLu300RouterInterfaceXml& document)
    {
        const std::lock_guard lock(m_mutex);
        document = m_document;
    }

private:
    std::mutex m_mutex;
    PelLu300RouterInterfaceXml m_document;
};
//! [a shared record]

// Both members of a document that belong together.
bool isConsistent(const PelLu300RouterInterfaceXml& document)
{
    const PelLu300RouterMessage& message = document.GetPelLu300RouterMessage();
    return message.GetFragment().size() == 1
           && message.GetFragment().first().GetOstraInterfacePort().GetPort()
                  == message.GetMessageID() + 4999;
}

} // namespace

TEST(ThreadsPage, ReadersGetCopiesWhileAWriterGoesOn)
{
    Latest latest;
    latest.Set(sample());
    std::atomic<int> wrong{0};
    std::vector<std::thread> readers;
    for (int reader = 0; reader < 3; ++reader)
        readers.emplace_back([&latest, &wrong] {
            const auto use = [&wrong](const PelLu300RouterInterfaceXml& document) {
                wrong += isConsistent(document) ? 0 : 1;
            };
            for (int round = 0; round < 300; ++round) {
                //! [a thread that reads]
                PelLu300RouterInterfaceXml document;
                latest.Get(document);
                use(document);
                //! [a thread that reads]
            }
        });
    PelLu300RouterInterfaceXml document = sample();
    for (unsigned int number = 1; number <= 300; ++number) {
        PelLu300RouterMessage& message = document.GetPelLu300RouterMessage();
        message.SetMessageID(number);
        message.GetFragment().first().GetOstraInterfacePort().SetPort(number + 4999);
        latest.Set(document);
    }
    for (std::thread& reader : readers)
        reader.join();
    EXPECT_EQ(wrong, 0);
    PelLu300RouterInterfaceXml last;
    latest.Get(last);
    EXPECT_EQ(messageID(last), 300U);
}

TEST(ThreadsPage, AThreadGetsItsCopyBeforeItStarts)
{
    const PelLu300RouterInterfaceXml document = sample();
    std::atomic<unsigned int> sum{0};
    const auto work = [&sum](const PelLu300RouterInterfaceXml& own) { sum += messageID(own); };
    //! [copies for threads]
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i)
        threads.emplace_back([work, own = PelLu300RouterInterfaceXml(document)] { work(own); });
    for (std::thread& thread : threads)
        thread.join();
    //! [copies for threads]
    EXPECT_EQ(sum, 4U);
}
