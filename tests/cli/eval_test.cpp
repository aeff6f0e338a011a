#include <gtest/gtest.h>

#include "cli/process.h"

namespace velm::test {

namespace {

std::string Eval(Words words) {
    words.insert(words.begin(), "eval");
    return Out(words);
}

std::string EvalRefusal(Words words) {
    words.insert(words.begin(), "eval");
    return Refusal(words);
}

}  // namespace

TEST(Eval, WritesAValueInEveryFormat) {
    EXPECT_EQ(Eval({"1234567.891"}), "1,234,567.891\n");
    EXPECT_EQ(Eval({"1234567.891", "--plain"}), "1234567.891\n");
    EXPECT_EQ(Eval({"-1234.5", "--as", "currency"}), "(1,234.50)\n");
    EXPECT_EQ(Eval({"-1234.5", "--as", "currency", "--plain"}), "-1234.50\n");
    EXPECT_EQ(Eval({"74565", "--as", "hex"}), "0001 2345\n");
    EXPECT_EQ(Eval({"8", "--as=octal"}), "0010\n");
    EXPECT_EQ(Eval({"5", "--as", "binary"}), "0101\n");
    EXPECT_EQ(Eval({"1.5", "--as", "hex", "--plain"}), "\n");
    EXPECT_EQ(Eval({"{3/5/2004}+7", "--as", "date"}), "Fri 3/12/2004\n");
    EXPECT_EQ(Eval({"2453069.5", "--as", "datetime"}), "Fri 3/5/2004 12:00:00 PM\n");
    EXPECT_EQ(Eval({"1/3", "--raw"}), "0.33333333333333331\n");
}

TEST(Eval, ReadsAndWritesCompoundGroups) {
    EXPECT_EQ(Eval({"-[5 3]", "--parts", "ft:1,in:12"}), "-5.25\n");
    EXPECT_EQ(Eval({"5.25", "--as", "compound", "--parts", "ft:1,in:12"}), "5 ft 3 in \n");
    EXPECT_EQ(Eval({"3725", "--as", "compound", "--parts", "h:1/3600,min:iif(1,60,0),:60"}), "1 h 2 min 5 \n");
    EXPECT_EQ(EvalRefusal({"1", "--parts", "a:1,b:1,c:1,d:1,e:1"}), "2: eval: --parts takes at most 4 parts");
    EXPECT_EQ(EvalRefusal({"1", "--parts", "ft"}), "2: eval: \"ft\" in --parts is not of the form LABEL:FACTOR");
    EXPECT_EQ(EvalRefusal({"1", "--parts", "ft:1+"}), "1: eval: cannot evaluate the factor \"1+\" of --parts");
}

TEST(Eval, DefinesVariablesInOrder) {
    EXPECT_EQ(Eval({"A*b", "a=3", "b=a+1"}), "12\n");
    EXPECT_EQ(Eval({"x=3", "x=3"}), "-1\n") << "the first argument is the formula, also with a = in it";
    EXPECT_EQ(EvalRefusal({"b", "b=a", "a=1"}), "1: eval: cannot evaluate \"a\" for b");
    EXPECT_EQ(EvalRefusal({"1", "2=3"}), "2: eval: \"2\" is not a name");
    EXPECT_EQ(EvalRefusal({"1", "pi=3"}), "2: eval: \"pi\" has a meaning of its own in formulas");
}

TEST(Eval, TakesWhatBeginsWithADashAsAValue) {
    EXPECT_EQ(Eval({"-x", "x=-4"}), "4\n");
    EXPECT_EQ(Eval({"--5"}), "5\n");
    EXPECT_EQ(Eval({"--raw", "-1"}), "-1\n");
    EXPECT_EQ(Eval({"--angle", "deg", "--", "--sin(90)"}), "1\n");
}

TEST(Eval, KnowsTheAngleModes) {
    EXPECT_EQ(Eval({"sin(pi/2)"}), "1\n");
    EXPECT_EQ(Eval({"sin(90)", "--angle", "deg"}), "1\n");
    EXPECT_EQ(Eval({"sin(100)", "--angle", "gra"}), "1\n");
    EXPECT_EQ(EvalRefusal({"1", "--angle", "degree"}),
              "2: eval: \"degree\" is no angle mode; did you mean \"deg\", \"gra\" or \"rad\"?");
}

TEST(Eval, SaysWhatIsWrong) {
    EXPECT_EQ(EvalRefusal({"2+"}), "1: eval: cannot evaluate \"2+\"");
    EXPECT_EQ(EvalRefusal({"1\n+"}), "1: eval: cannot evaluate \"1?+\"");
    EXPECT_EQ(EvalRefusal({}), "2: eval: FORMULA is required (see velmora eval --help)");
    EXPECT_EQ(EvalRefusal({"1", "--rw"}), "2: eval: there is no option --rw; did you mean \"--raw\"?");
    EXPECT_EQ(EvalRefusal({"1", "--as"}), "2: eval: --as needs a value");
    EXPECT_EQ(EvalRefusal({"1", "--as", "hexx"}), "2: eval: \"hexx\" is no format; did you mean \"hex\"?");
    EXPECT_EQ(EvalRefusal({"1", "--data", "x"}), "2: eval: --data stands before the command");
    EXPECT_EQ(EvalRefusal({"1", "2"}), "2: eval: \"2\" is not of the form NAME=VALUE");
    EXPECT_EQ(EvalRefusal({"-", "x=-"}), "2: eval: only one of FORMULA and the values can be -");
}

TEST(Command, HelpsAndNamesItsVersion) {
    EXPECT_NE(Out({"--help"}).find("convert  FILE UNIT VALUE"), std::string::npos);
    EXPECT_NE(Out({"eval", "--help"}).find("--parts LABEL:FACTOR,..."), std::string::npos);
    EXPECT_EQ(Out({"--version"}).substr(0, 9), "velmora 1");
    EXPECT_EQ(Refusal({}), "2: a command is missing (see velmora --help)");
    EXPECT_EQ(Refusal({"--data"}), "2: --data needs a folder");
}

}  // namespace velm::test
