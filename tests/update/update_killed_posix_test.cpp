#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <string>

#include "support/sample_documents.h"
#include "support/temporary_folder.h"
#include "support/test_services.h"
#include "update/downloader.h"
#include "update/merge.h"

namespace velm::test {
namespace {

/// Kills its process with the signal that nobody can catch, just before the n-th call that changes the disk.
class KillingFiles : public CVelmFileSystem {
public:
    explicit KillingFiles(int lastCall) : left_(lastCall) {}

    void Step() {
        if (--left_ == 0) {
            kill(getpid(), SIGKILL);
        }
    }

    std::unique_ptr<CVelmFile> Open(const CVelmString& path, FileMode mode) override {
        Step();
        auto file = SystemFiles().Open(path, mode);
        return file ? std::make_unique<KillingFile>(*this, std::move(file)) : nullptr;
    }
    bool Replace(const CVelmString& from, const CVelmString& to) override {
        Step();
        return SystemFiles().Replace(from, to);
    }
    bool Remove(const CVelmString& path) override {
        Step();
        return SystemFiles().Remove(path);
    }
    bool Exists(const CVelmString& path) override { return SystemFiles().Exists(path); }
    std::optional<std::vector<CVelmFolderEntry>> List(const CVelmString& folder) override {
        return SystemFiles().List(folder);
    }

private:
    class KillingFile : public CVelmFile {
    public:
        KillingFile(KillingFiles& owner, std::unique_ptr<CVelmFile> file) : owner_(owner), file_(std::move(file)) {}
        ~KillingFile() override { owner_.Step(); }

        std::int64_t Read(void* buffer, std::size_t count) override { return file_->Read(buffer, count); }
        std::int64_t Write(const void* buffer, std::size_t count) override {
            owner_.Step();
            // Half of it may reach the disk.
            file_->Write(buffer, count / 2);
            owner_.Step();
            return static_cast<std::int64_t>(count / 2) +
                   file_->Write(static_cast<const char*>(buffer) + count / 2, count - count / 2);
        }
        bool Seek(std::uint64_t position) override { return file_->Seek(position); }
        bool SeekToEnd() override { return file_->SeekToEnd(); }
        std::optional<std::uint64_t> Size() override { return file_->Size(); }
        std::optional<CVelmFileTimes> Times() override { return file_->Times(); }
        bool Flush() override {
            owner_.Step();
            return file_->Flush();
        }

    private:
        KillingFiles& owner_;
        std::unique_ptr<CVelmFile> file_;
    };

    int left_;
};

/// Hands out a local copy of one update file, as if it had come over the network.
class LocalFetcher : public CVelmFetcher {
public:
    explicit LocalFetcher(const TemporaryFolder& folder) : folder_(folder) {}

    CVelmFetched Fetch(const CVelmString&, const CVelmFetchProgress&) override {
        folder_.WriteText(u"cached", "VLMUPD\n--File Name:Currency\nUSD\tEUR\t2\nEUR\tGBP\t0.75\n");
        return {FetchStatus::Ok, folder_.PathOf(u"cached")};
    }

private:
    const TemporaryFolder& folder_;
};

class KilledUpdate : public testing::Test {
protected:
    void StoreDocuments() {
        for (const CVelmString& name : folder.Names()) {
            SystemFiles().Remove(folder.PathOf(name));
        }
        const auto currency = MakeConversionDoc(services.Services(), u"Currency", {u"USD", u"EUR", u"GBP"});
        Join(*currency, 0, 1, 1.0);
        Join(*currency, 1, 2, 1.0);
        ASSERT_TRUE(currency->Save(folder.Path()));
        ASSERT_TRUE(MakeConversionDoc(services.Services(), u"Length", {u"m", u"km"})->Save(folder.Path()));
    }

    /// What a user does: download, then merge into the open document.
    bool Update(CVelmFileSystem& files) {
        TestServices run(files);
        FormulaContext context(run.clock);
        CVelmCatalog catalog(run.Services());
        catalog.SetFolder(folder.Path());
        catalog.ScanFolder();
        auto* document = static_cast<CVelmConversionDoc*>(catalog.GetDocument(u"Currency.cnv", true));
        LocalFetcher fetcher(cache);
        CVelmDownloader downloader(catalog, fetcher, u"http://list");
        return downloader.Run() && Merge(*document, catalog, context);
    }

    /// True when the process was killed, false when it came to its end.
    bool IsKilledAtCall(int call) {
        const pid_t child = fork();
        if (child == 0) {
            KillingFiles files(call);
            _exit(Update(files) ? 0 : 1);
        }
        int status = 0;
        EXPECT_EQ(waitpid(child, &status, 0), child);
        if (WIFSIGNALED(status)) {
            EXPECT_EQ(WTERMSIG(status), SIGKILL);
            return true;
        }
        EXPECT_EQ(status, 0);
        return false;
    }

    /// The rates as a user finds them who opens the folder again and looks at the file.
    std::string RatesFoundAfterwards() {
        FormulaContext context(services.clock);
        CVelmCatalog catalog(services.Services());
        catalog.SetFolder(folder.Path());
        MergeWhenOpened(catalog, context);
        catalog.AddFile(u"Length.cnv");
        catalog.ScanFolder();
        EXPECT_EQ(catalog.documents.size(), 2U);
        EXPECT_TRUE(catalog.Activate(0)->loaded);
        auto* document = catalog.GetDocument(u"Currency.cnv", true);
        if (document == nullptr || !document->loaded || document->DroppedRecords() != 0) {
            return "the file is lost";
        }
        return Conversions(static_cast<CVelmConversionDoc&>(*document));
    }

    TemporaryFolder folder;
    TemporaryFolder cache;
    TestServices services;
};

TEST_F(KilledUpdate, LosesNeitherARateNorADocument) {
    const std::string before = "USD*1.=EUR EUR*1.=GBP ";
    const std::string after = "USD*2.=EUR EUR*0.75=GBP ";
    bool stored = false;
    int call = 1;
    for (;; ++call) {
        ASSERT_LT(call, 1000) << "the run never comes to its end";
        StoreDocuments();
        const bool killed = IsKilledAtCall(call);
        const bool arrived = folder.Contains(u"Currency.upd");
        const std::string rates = RatesFoundAfterwards();
        if (!killed) {
            EXPECT_EQ(rates, after);
            break;
        }
        // Once the update file stands in the folder, its rates are never lost again.
        stored = stored || arrived;
        EXPECT_EQ(rates, stored ? after : before) << "killed at call " << call;
    }
    EXPECT_TRUE(stored);
    EXPECT_GT(call, 20) << "there were hardly any calls to be killed at";
}

}  // namespace
}  // namespace velm::test
