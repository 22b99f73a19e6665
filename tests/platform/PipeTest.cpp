#include "platform/Pipe.h"

#include <gtest/gtest.h>

#include <array>
#include <cerrno>

#include <fcntl.h>
#include <unistd.h>

namespace zentrill {
namespace {

TEST(Pipe, IsOpenToNoProgramThatIsStarted) {
    const Pipe pipe = Pipe::open();
    EXPECT_EQ(::fcntl(pipe.reading.get(), F_GETFD) & FD_CLOEXEC, FD_CLOEXEC);
    EXPECT_EQ(::fcntl(pipe.writing.get(), F_GETFD) & FD_CLOEXEC, FD_CLOEXEC);
}

TEST(Pipe, IsReadWithoutWaiting) {
    const Pipe pipe = Pipe::open();
    ASSERT_EQ(::fcntl(pipe.reading.get(), F_GETFL) & O_NONBLOCK, O_NONBLOCK);
    std::array<char, 4> text{};
    EXPECT_EQ(::read(pipe.reading.get(), text.data(), text.size()), -1);
    EXPECT_EQ(errno, EAGAIN);
    ASSERT_EQ(::write(pipe.writing.get(), "ab", 2), 2);
    EXPECT_EQ(::read(pipe.reading.get(), text.data(), text.size()), 2);
}

TEST(Pipe, IsWrittenToWithWaiting) {
    const Pipe pipe = Pipe::open();
    EXPECT_EQ(::fcntl(pipe.writing.get(), F_GETFL) & O_NONBLOCK, 0);
}

TEST(Pipe, StaysClearOfTheStandardStreamsOfAProgramWithoutThem) {
    const FileDescriptor errors(::fcntl(STDERR_FILENO, F_DUPFD_CLOEXEC, STDERR_FILENO + 1));
    ASSERT_TRUE(errors);
    ::close(STDERR_FILENO);
    const Pipe pipe = Pipe::open();
    ASSERT_EQ(::dup2(errors.get(), STDERR_FILENO), STDERR_FILENO);
    EXPECT_GT(pipe.reading.get(), STDERR_FILENO);
    EXPECT_GT(pipe.writing.get(), STDERR_FILENO);
}

} // namespace
} // namespace zentrill
