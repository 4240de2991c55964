// Compiles a .ksy with the npm build of the Kaitai Struct compiler, as its command-line form
// would: `node ksc.js NPM_DIR TARGET OUT_DIR FILE.ksy`. Writes the generated files into OUT_DIR,
// the description as JSON beside them (ksy.json, for the readers), and prints each of the
// compiler's warnings as a line "warning: ...". The npm build returns no warnings of its own, so
// its one step that sees them is wrapped to keep them; exit status 2 where that step has moved.
"use strict";
const fs = require("fs");
const path = require("path");
const Module = require("module");

const [npmDir, target, outDir, ksyPath] = process.argv.slice(2);
const modules = path.join(npmDir, "node_modules");
const compilerPath = path.join(modules, "kaitai-struct-compiler", "kaitai-struct-compiler.js");

// The step that turns parsed YAML into specs receives every problem, warnings included.
const step = "var problems = $as_sc_Iterable(problems$2);";
let source = fs.readFileSync(compilerPath, "utf8");
if (source.split(step).length !== 2) {
  console.error("ksc.js: this compiler build does not report its problems where expected");
  process.exit(2);
}
source = source.replace(step, step + " globalThis.ksyProblems = problems.toList__sci_List();");
const loaded = new Module(compilerPath, module);
loaded.filename = compilerPath;
loaded.paths = Module._nodeModulePaths(path.dirname(compilerPath));
loaded._compile(source, compilerPath);
const exported = loaded.exports;
// Before 0.11 the module is the compiler's constructor; since, the compiler itself.
const compiler = typeof exported === "function" ? new exported() : exported;

const yaml = require(path.join(modules, "js-yaml"));
const description = yaml.load(fs.readFileSync(ksyPath, "utf8"));
fs.mkdirSync(outDir, { recursive: true });
fs.writeFileSync(path.join(outDir, "ksy.json"), JSON.stringify(description));

compiler.compile(target, description, null, false).then((files) => {
  for (let list = globalThis.ksyProblems; list && !list.isEmpty__Z(); list = list.tail__O())
    console.log("warning: " + list.head__O().message__T().replace(/\s+/g, " "));
  for (const name of Object.keys(files)) fs.writeFileSync(path.join(outDir, name), files[name]);
}).catch((error) => {
  console.error("error: " + (error && error.getMessage ? error.getMessage() : error));
  process.exit(1);
});
