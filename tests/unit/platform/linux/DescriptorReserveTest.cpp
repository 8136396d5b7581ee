#include "platform/linux/DescriptorReserve.h"
#include "platform/linux/FileDescriptor.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <vector>

#include <sys/eventfd.h>
#include <sys/resource.h>

namespace vigilo::platform {
namespace {

constexpr std::size_t count = 4;

FileDescriptor descriptor() {
    return FileDescriptor(eventfd(0, EFD_CLOEXEC));
}

/// A process that can use up all its descriptors but for the reserve.
class DescriptorReserveTest : public testing::Test {
protected:
    DescriptorReserveTest() {
        getrlimit(RLIMIT_NOFILE, &ordinary_);
        const rlimit few{.rlim_cur = 64, .rlim_max = ordinary_.rlim_max};
        setrlimit(RLIMIT_NOFILE, &few);
    }
    ~DescriptorReserveTest() override { setrlimit(RLIMIT_NOFILE, &ordinary_); }

    /// Called by each test, and not before it: a sanitizer that looks at the test's object when it
    /// is first used needs a descriptor for it.
    void useUpTheRest() {
        while (FileDescriptor one = descriptor()) {
            used_.push_back(std::move(one));
        }
    }

    DescriptorReserve reserve{count};

private:
    rlimit ordinary_{};
    std::vector<FileDescriptor> used_;
};

/// How many descriptors can be had.
std::size_t available() {
    std::vector<FileDescriptor> taken;
    while (FileDescriptor one = descriptor()) {
        taken.push_back(std::move(one));
    }
    return taken.size();
}

TEST_F(DescriptorReserveTest, keepsItsDescriptorsUntilTheyAreLent) {
    useUpTheRest();
    EXPECT_EQ(available(), 0U);
    DescriptorReserve::Loan loan = reserve.lend();
    EXPECT_EQ(available(), count);
    loan.reset();
    EXPECT_EQ(available(), 0U);
}

TEST_F(DescriptorReserveTest, isLentUntilTheLastLoanIsGone) {
    useUpTheRest();
    DescriptorReserve::Loan first = reserve.lend();
    const DescriptorReserve::Loan second = reserve.lend();
    first.reset();
    EXPECT_EQ(available(), count);
}

TEST_F(DescriptorReserveTest, takesBackWhatIsThereToBeHad) {
    useUpTheRest();
    FileDescriptor kept;
    {
        const DescriptorReserve::Loan loan = reserve.lend();
        kept = descriptor();
    }
    EXPECT_EQ(available(), 0U);
    const DescriptorReserve::Loan loan = reserve.lend();
    EXPECT_EQ(available(), count - 1);
}

TEST(DescriptorReserve, mayEndBeforeItsLoan) {
    DescriptorReserve::Loan loan;
    {
        DescriptorReserve reserve(count);
        loan = reserve.lend();
    }
    EXPECT_TRUE(loan);
}

} // namespace
} // namespace vigilo::platform
