// A job writes its records; another process follows them.

#include <gtest/gtest.h>
#include <signal.h>

#include <chrono>
#include <string>
#include <thread>

#include "KOVObjDocument.h"
#include "KOVSimDataRecord.h"
#include "KOVSimMap.h"
#include "KOVSimSchema.h"
#include "KOVSimTransaction.h"
#include "KOVSimVector.h"
#include "KOVSrvDiagnosticsHandler.h"
#include "Process.h"

namespace kov::test {
namespace {

class Job {
  public:
    explicit Job(std::string const& path) : m_document(KOVObjDocument::Create(path.c_str())) {
        KOVSimTransaction transaction(m_document.ContextID());
        KOVSimPosition const model = m_document.GetModel();
        for (char const* const name : {"Load", "Unload", "Rest"}) {
            KOVSimPosition const step =
                m_document.CreateDataRecord(schema::Step_Gen_Static()).Pos();
            model.GetMap(schema::Model_steps()).Insert(name, step);
            model.GetVector(schema::Model_stepSequence()).PushBack(step);
        }
        transaction.Commit();
        Handler().SetDocument(m_document);
    }
    ~Job() {
        KOVObjDocument none;
        Handler().SetDocument(none);
        m_document.Close();
    }

    static KOVSrvDiagnosticsHandler& Handler() {
        return *omi_Singleton<KOVSrvDiagnosticsHandler>::Instance();
    }

    void Condition(char const* step, int code, bool flag) {
        int ints[] = {7, -8};
        double doubles[] = {0.5};
        char text[] = "say \"hi\"";
        char* strings[] = {text};
        Handler().BeginStep(step);
        Handler().AddWarningError(code, flag, ints, 2, doubles, 1, strings, 1, nullptr, 0, nullptr,
                                  0);
        Handler().EndStep();
    }
    KOVObjDocument const& Document() const { return m_document; }

  private:
    KOVObjDocument m_document;
};

TEST(Monitor, TellsHowThingsStand) {
    Workshop const work;
    Job job(work / "j.ksd");
    EXPECT_EQ(work.Run({"monitor", "j.ksd", "--once"}).output, "");
    Job::Handler().SetJobStatus(2);
    job.Condition("Load", 100, true);
    job.Condition("Load", 101, false);
    auto const text = work.Run({"monitor", "j.ksd", "--once"});
    EXPECT_EQ(text.status, 0) << text.errors;
    EXPECT_EQ(text.output,
              "status 2\nstep Load\nLoad: condition 100 of kind 0: 7, -8, 0.5, \"say \"hi\"\"\n"
              "Load: condition 101 of kind 3: 7, -8, 0.5, \"say \"hi\"\"\n");
    EXPECT_EQ(work.Run({"monitor", "j.ksd", "--once", "--json"}).output,
              "{\"event\": \"status\", \"status\": 2}\n{\"event\": \"step\", \"step\": \"Load\"}\n"
              "{\"event\": \"condition\", \"step\": \"Load\", \"code\": 100, \"kind\": 0, "
              "\"arguments\": [7, -8, 0.5, "
              "\"say \\\"hi\\\"\"]}\n"
              "{\"event\": \"condition\", \"step\": \"Load\", \"code\": 101, \"kind\": 3, "
              "\"arguments\": [7, -8, 0.5, "
              "\"say \\\"hi\\\"\"]}\n");
    EXPECT_NE(work.Run({"info", "j.ksd", "--json"}).output.find("\"jobStatus\": 2"),
              std::string::npos);
}

bool WaitFor(Process const& process, std::string const& text) {
    for (int i = 0; i < 3000; ++i) {
        if (process.Output() == text) return true;
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    return false;
}

TEST(Monitor, FollowsALiveJobToItsLastStatus) {
    Workshop const work;
    Job job(work / "j.ksd");
    Process monitor(work.Folder(), {"monitor", "j.ksd", "--interval", "0.02", "--until", "9"});
    Job::Handler().SetJobStatus(1);
    std::string expected = "status 1\n";
    EXPECT_TRUE(WaitFor(monitor, expected));
    job.Condition("Load", 1, false);
    expected += "step Load\nLoad: condition 1 of kind 3: 7, -8, 0.5, \"say \"hi\"\"\n";
    EXPECT_TRUE(WaitFor(monitor, expected));
    job.Condition("Unload", 2, true);
    expected += "step Unload\nUnload: condition 2 of kind 0: 7, -8, 0.5, \"say \"hi\"\"\n";
    EXPECT_TRUE(WaitFor(monitor, expected));
    job.Condition("Load", 3, true);
    expected += "Load: condition 3 of kind 0: 7, -8, 0.5, \"say \"hi\"\"\n";
    EXPECT_TRUE(WaitFor(monitor, expected));
    Job::Handler().SetJobStatus(9);
    EXPECT_EQ(monitor.Wait(), 0) << monitor.Errors();
    EXPECT_EQ(monitor.Output(), expected + "status 9\n");
}

TEST(Monitor, AnInterruptIsItsOrdinaryEnd) {
    Workshop const work;
    Job const job(work / "j.ksd");
    Job::Handler().SetJobStatus(1);
    Process monitor(work.Folder(), {"monitor", "j.ksd", "--interval", "100"});
    EXPECT_TRUE(WaitFor(monitor, "status 1\n"));
    monitor.Signal(SIGINT);
    EXPECT_EQ(monitor.Wait(), 0);
    EXPECT_EQ(monitor.Errors(), "");
}

}  // namespace
}  // namespace kov::test
