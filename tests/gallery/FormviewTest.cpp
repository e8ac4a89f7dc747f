// The formview tool as a user runs it: exit status and messages for bad input, and a
// screenshot of a good form.

#include "platform/graphics/ImageIO.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>
#include <sys/wait.h>

namespace {

struct TRun {
    int status;
    std::string output; // stdout and stderr
};

TRun RunFormview(const std::string& args) {
    const std::string command = std::string(QV_FORMVIEW) + " " + args + " 2>&1";
    FILE* pipe = popen(command.c_str(), "r");
    std::string output;
    char buffer[256];
    while (pipe && fgets(buffer, sizeof buffer, pipe))
        output += buffer;
    const int status = pipe ? pclose(pipe) : -1;
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, output};
}

std::string WriteForm(const std::string& name, const std::string& text) {
    const std::filesystem::path dir = QV_TEST_OUT;
    std::filesystem::create_directories(dir);
    const std::string path = (dir / name).string();
    std::ofstream(path) << text;
    return path;
}

} // namespace

TEST(Formview, ErrorsNameFileLineAndColumnWithStatusTwo) {
    const std::string bad =
        WriteForm("bad.txt", "object F: TForm\n  Caption = 'x'\n  Colour = 3\nend\n");
    const TRun unknown = RunFormview(bad);
    EXPECT_EQ(unknown.status, 2);
    EXPECT_EQ(unknown.output.rfind(bad + ": line 3, column 3: ", 0), 0u) << unknown.output;

    const std::string cut = WriteForm("cut.txt", "object F: TForm\n  Caption = 'x\n");
    const TRun unterminated = RunFormview(cut + " --png " + cut + ".png");
    EXPECT_EQ(unterminated.status, 2);
    EXPECT_EQ(unterminated.output.rfind(cut + ": line 2, column ", 0), 0u) << unterminated.output;

    const TRun missing = RunFormview(std::string(QV_TEST_OUT) + "/no-such-form.txt");
    EXPECT_EQ(missing.status, 2);
    EXPECT_NE(missing.output.find("no-such-form.txt: "), std::string::npos);

    const std::string notForm = WriteForm("timer.txt", "object T: TTimer\nend\n");
    EXPECT_EQ(RunFormview(notForm).status, 2);
    EXPECT_EQ(RunFormview("").status, 1);
}

TEST(Formview, PngOptionWritesTheFormAsShown) {
    const std::string form =
        WriteForm("teal.txt", "object F: TForm\n  Color = clTeal\n  Width = 120\n"
                              "  Height = 70\nend\n");
    const std::string png = std::string(QV_TEST_OUT) + "/teal.png";
    std::filesystem::remove(png);
    const TRun run = RunFormview(form + " --png " + png);
    ASSERT_EQ(run.status, 0) << run.output;
    const qv::TDecodedImage image = qv::DecodePng(qv::ReadFileBytes(png), png);
    ASSERT_EQ(image.pixels.Width(), 120);
    ASSERT_EQ(image.pixels.Height(), 70);
    EXPECT_EQ(image.pixels.At(60, 35) & 0xFFFFFF, 0x008080u);

    const TRun designed = RunFormview(form + " --design --png " + png);
    EXPECT_EQ(designed.status, 0) << designed.output;

    // The framework's own controls are registered for form files.
    const std::string controls = WriteForm(
        "controls.txt", "object F: TForm\n  object P: TPanel\n    object L: TLabel\n    end\n"
                        "  end\n  object E: TEdit\n  end\n  object B: TListBox\n  end\n"
                        "  object C: TComboBox\n  end\nend\n");
    const TRun standard = RunFormview(controls + " --png " + png);
    EXPECT_EQ(standard.status, 0) << standard.output;
}
