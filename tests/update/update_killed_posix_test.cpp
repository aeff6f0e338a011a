#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include "support/sample_documents.h"
#include "support/temporary_folder.h"
#include "update/downloader.h"
#include "update/merge.h"
#include "update/page_fetcher.h"

namespace velm::test {
namespace {

/// The system's files in a process that kills itself (SIGKILL) just before its n-th change of the disk.
class KillingFiles : public CVelmFileSystem {
public:
    explicit KillingFiles(int step) : left_(step) {}

    std::unique_ptr<CVelmFile> Open(const CVelmString& path, FileMode mode) override {
        if (mode == FileMode::Read) {
            return SystemFiles().Open(path, mode);
        }
        Step();
        auto file = SystemFiles().Open(path, mode);
        return file == nullptr ? nullptr : std::make_unique<File>(*this, std::move(file));
    }
    bool Replace(const CVelmString& from, const CVelmString& to) override {
        return Step() && SystemFiles().Replace(from, to);
    }
    bool Remove(const CVelmString& path) override { return Step() && SystemFiles().Remove(path); }
    bool Exists(const CVelmString& path) override { return SystemFiles().Exists(path); }
    std::optional<std::vector<CVelmFolderEntry>> List(const CVelmString& folder) override {
        return SystemFiles().List(folder);
    }

private:
    class File : public CVelmFile {
    public:
        File(KillingFiles& files, std::unique_ptr<CVelmFile> file) : files_(files), file_(std::move(file)) {}

        std::int64_t Read(void* buffer, std::size_t count) override { return file_->Read(buffer, count); }
        std::int64_t Write(const void* buffer, std::size_t count) override {
            const std::int64_t half = files_.Step() ? file_->Write(buffer, count / 2) : -1;
            files_.Step();
            return half + file_->Write(static_cast<const char*>(buffer) + half, count - count / 2);
        }
        bool Seek(std::uint64_t position) override { return file_->Seek(position); }
        bool SeekToEnd() override { return file_->SeekToEnd(); }
        std::optional<std::uint64_t> Size() override { return file_->Size(); }
        std::optional<CVelmFileTimes> Times() override { return file_->Times(); }
        bool Flush() override { return files_.Step() && file_->Flush(); }

    private:
        KillingFiles& files_;
        std::unique_ptr<CVelmFile> file_;
    };

    bool Step() { return --left_ != 0 || kill(getpid(), SIGKILL) == 0; }

    int left_;
};

class KilledUpdate : public testing::Test {
protected:
    void StoreDocuments() {
        for (const CVelmString& name : folder.Names()) {
            SystemFiles().Remove(folder.PathOf(name));
        }
        const auto currency = MakeConversionDoc(services.Services(), u"Currency", {u"USD", u"EUR"});
        Join(*currency, 0, 1);
        ASSERT_TRUE(currency->Save(folder.Path()));
        ASSERT_TRUE(MakeConversionDoc(services.Services(), u"Length", {u"m"})->Save(folder.Path()));
    }

    /// What a user does: download, then merge into the open document.
    bool Update(CVelmFileSystem& files) {
        TestServices run(files);
        FormulaContext context(run.clock);
        CVelmCatalog catalog(run.Services());
        catalog.SetFolder(folder.Path());
        catalog.ScanFolder();
        auto* document = static_cast<CVelmConversionDoc*>(catalog.GetDocument(u"Currency.cnv", true));
        PageFetcher fetcher([this](const std::string& page) {
            cache.WriteText(u"cached", page);
            return cache.PathOf(u"cached");
        });
        fetcher.pages["http://list"] = "VLMUPD\n--File Name:Currency\nUSD\tEUR\t2\n";
        CVelmDownloader downloader(catalog, fetcher, u"http://list");
        return downloader.Run() && Merge(*document, catalog, context);
    }

    /// False when the process ended normally.
    bool IsKilledAtStep(int step) {
        const pid_t child = fork();
        if (child == 0) {
            KillingFiles files(step);
            _exit(Update(files) ? 0 : 1);
        }
        int status = 0;
        EXPECT_EQ(waitpid(child, &status, 0), child);
        EXPECT_TRUE(status == 0 || (WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL)) << status;
        return status != 0;
    }

    /// The rates found when the folder is opened again.
    std::string RatesAfterRestart() {
        FormulaContext context(services.clock);
        CVelmCatalog catalog(services.Services());
        catalog.SetFolder(folder.Path());
        MergeWhenOpened(catalog, context);
        catalog.AddFile(u"Length.cnv");
        catalog.ScanFolder();
        EXPECT_TRUE(catalog.documents.size() == 2 && catalog.Activate(0)->loaded);
        auto* document = static_cast<CVelmConversionDoc*>(catalog.GetDocument(u"Currency.cnv", true));
        const bool whole = document != nullptr && document->loaded && document->droppedRecords == 0;
        return whole ? Conversions(*document) : "the file is lost";
    }

    TemporaryFolder folder;
    TemporaryFolder cache;
    TestServices services;
};

TEST_F(KilledUpdate, LosesNeitherARateNorADocument) {
    bool stored = false;
    int step = 0;
    for (bool killed = true; killed;) {
        ASSERT_LT(++step, 1000) << "the run never comes to its end";
        StoreDocuments();
        killed = IsKilledAtStep(step);
        // Once the update file is in the folder, its rates are never lost.
        stored = stored || !killed || folder.Contains(u"Currency.upd");
        EXPECT_EQ(RatesAfterRestart(), stored ? "USD*2=EUR " : "USD*1=EUR ") << "killed at step " << step;
    }
    EXPECT_GT(step, 10) << "there were hardly any steps to be killed at";
}

}  // namespace
}  // namespace velm::test
