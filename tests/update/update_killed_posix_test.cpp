#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include "support/faulty_files.h"
#include "support/sample_documents.h"
#include "support/temporary_folder.h"
#include "update/downloader.h"
#include "update/merge.h"
#include "update/page_fetcher.h"

namespace velm::test {
namespace {

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
        PageFetcher fetcher([this](const std::string& page) {
            cache.WriteText(u"cached", page);
            return cache.PathOf(u"cached");
        });
        fetcher.pages["http://list"] = "VLMUPD\n--File Name:Currency\nUSD\tEUR\t2\nEUR\tGBP\t0.75\n";
        CVelmDownloader downloader(catalog, fetcher, u"http://list");
        return downloader.Run() && Merge(*document, catalog, context);
    }

    /// Lets a child process end, with the signal that nobody can catch, just before the n-th step that changes the
    /// disk. False when it came to its own end.
    bool IsKilledAtStep(int step) {
        const pid_t child = fork();
        if (child == 0) {
            FaultyFiles files(SystemFiles());
            files.beforeEachStep = [left = step]() mutable {
                if (--left == 0) {
                    kill(getpid(), SIGKILL);
                }
            };
            _exit(Update(files) ? 0 : 1);
        }
        int status = 0;
        EXPECT_EQ(waitpid(child, &status, 0), child);
        EXPECT_TRUE(status == 0 || (WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL)) << status;
        return status != 0;
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
    int step = 0;
    for (bool killed = true; killed;) {
        ASSERT_LT(++step, 1000) << "the run never comes to its end";
        StoreDocuments();
        killed = IsKilledAtStep(step);
        // Once the update file stands in the folder, its rates are never lost again.
        stored = stored || !killed || folder.Contains(u"Currency.upd");
        EXPECT_EQ(RatesFoundAfterwards(), stored ? after : before) << "killed at step " << step;
    }
    EXPECT_GT(step, 20) << "there were hardly any steps to be killed at";
}

}  // namespace
}  // namespace velm::test
