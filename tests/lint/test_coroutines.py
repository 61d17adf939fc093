import unittest

import support
import co_await_operand
import coroutine_lambda


class CoAwaitOperand(unittest.TestCase):
    def faults(self, text):
        return support.lines(co_await_operand.check({"a.cpp": text}))

    def test_good(self):
        for text in (
            "const auto image = co_await task;",
            "co_await std::move(task);",
            "co_return co_await task;",
            "const auto bytes = (co_await task).value();",
            "use(co_await first, co_await second);",
            "// co_await f();\nauto s = \"co_await f()\";",
            "auto operator co_await(Thing&& thing);",
        ):
            self.assertEqual(self.faults(text), [], text)

    def test_bad(self):
        for text in (
            "co_await f();",
            "co_await object.member;",
            "co_await pointer->task;",
            "co_await tasks[0];",
            "co_await Task{};",
            "co_await std::move(f());",
            "co_await std::move(object.task);",
            "co_await (task);",
            "co_await QCoro::sleepFor(ms);",
            "co_await *task;",
            "co_await make<int>();",
            "co_await this;",
            "co_await m_task;",
            "co_await run([] {});",
        ):
            self.assertEqual(self.faults(text), [1], text)

    def test_operand_on_the_next_line(self):
        self.assertEqual(self.faults("co_await\n    task;"), [])
        self.assertEqual(self.faults("co_await\n    f();"), [1])

    def test_no_bracket_or_brace_on_the_line(self):
        self.assertEqual(self.faults("\nx = Point{co_await task, 1};"), [2])
        self.assertEqual(self.faults("rows[co_await task] = 1;"), [1])
        self.assertEqual(self.faults("if (co_await task) {"), [1])


class CoroutineLambda(unittest.TestCase):
    def faults(self, text):
        return support.lines(coroutine_lambda.check({"a.cpp": text}))

    def test_good(self):
        for text in (
            "auto f = [](QString name) -> QCoro::Task<> { co_await name; };",
            "auto f = [this] { start(); };",
            "QCoro::Task<> f() { int a[3]; a[0] = 1; co_return; }",
            "QCoro::Task<> f() { auto [a, b] = g(); { co_return; } }",
            "QCoro::Task<> f() { for (auto& [a, b] : map) { co_await a; } }",
            "QCoro::Task<> f() { delete[] a; g([x] { use(x); }); co_return; }",
            "[[nodiscard]] QCoro::Task<> f() { co_return; }",
            "auto f = [a] { return [](int b) -> Task { co_return b; }; };",
            "int& operator[](int a) { co_return; }",
        ):
            self.assertEqual(self.faults(text), [], text)

    def test_bad(self):
        for text in (
            "auto f = [this]() -> QCoro::Task<> { co_await task; };",
            "g([&] { co_return; });",
            "return [x = 1]<typename T>(T t) mutable noexcept { co_yield t; };",
            "auto f = [a](int b = g({})) -> std::vector<int> { if (b) { co_return; } };",
            "auto f = [=]\n(int b)\n{ co_return b; };",
            "auto f = [] { return [a]() -> Task { co_return; }; };",
        ):
            self.assertEqual(self.faults(text), [1], text)


if __name__ == "__main__":
    unittest.main()
