// Reads records with the JavaScript reader generated from ehal.ksy and prints what it read as
// JSON: `node read.js NPM_DIR COMPILED_DIR` with jobs on standard input, a JSON list of
// {"type": KSY_TYPE_ID, "hex": BYTES_AS_HEX}. One result per job: {"record": ..., "consumed": N}
// or {"error": TEXT}. A record is an object of its attributes in order, under their `-orig-id`
// where they have one; a number is {"token", "value", ...} with its other value instances and,
// for a named value, "named": the enum's value and member. Bytes are {"hex": ...}.
"use strict";
const fs = require("fs");
const path = require("path");

const [npmDir, compiledDir] = process.argv.slice(2);
const runtime = path.join(npmDir, "node_modules", "kaitai-struct", "KaitaiStream.js");
const KaitaiStream = require(runtime);
// The generated module asks for the runtime by its package name.
const Module = require("module");
const resolve = Module._resolveFilename;
Module._resolveFilename = function (request, ...rest) {
  return request === "kaitai-struct/KaitaiStream" ? runtime : resolve.call(this, request, ...rest);
};
// Since 0.11 the module holds the root type under its name; before, it is the root type.
const compiled = require(path.join(compiledDir, "Ehal.js"));
const Ehal = compiled.Ehal || compiled;
const ksy = JSON.parse(fs.readFileSync(path.join(compiledDir, "ksy.json"), "utf8"));

// Kaitai's names in JavaScript: a type's in UpperCamelCase, an attribute's in lowerCamelCase.
const upper = (id) => id.split("_").map((part) => part.charAt(0).toUpperCase() + part.slice(1)).join("");
const lower = (id) => { const name = upper(id); return name.charAt(0).toLowerCase() + name.slice(1); };
const typeOfClass = new Map(Object.keys(ksy.types).map((id) => [upper(id), id]));

function plain(value) {
  if (value instanceof Uint8Array) return { hex: Buffer.from(value).toString("hex").toUpperCase() };
  if (Array.isArray(value)) return value.map(plain);
  if (value !== null && typeof value === "object") return dump(value);
  if (typeof value === "number" && !Number.isSafeInteger(value) && Number.isInteger(value))
    return { unsafe: String(value) };
  return value;
}

function dump(object) {
  const id = typeOfClass.get(object.constructor.name);
  if (id === undefined) throw new Error("an object of no type of the description: " + object.constructor.name);
  const definition = ksy.types[id];
  const out = {};
  const keys = {};
  for (const attribute of definition.seq || []) {
    const value = object[lower(attribute.id)];
    if (value === undefined || value === null) continue;
    keys[attribute.id] = attribute["-orig-id"] !== undefined ? attribute["-orig-id"] : attribute.id;
    out[keys[attribute.id]] = plain(value);
  }
  for (const [name, instance] of Object.entries(definition.instances || {})) {
    if (instance.value === undefined) continue;
    const value = object[lower(name)];
    if (instance.enum === undefined) { out[name] = plain(value); continue; }
    const owner = keys[instance.value.replace(/\.value$/, "")];
    const members = Ehal[upper(instance.enum)] || {};
    out[owner].named = { value: value, member: members[value] === undefined ? null : members[value] };
  }
  return out;
}

const jobs = JSON.parse(fs.readFileSync(0, "utf8"));
const results = jobs.map((job) => {
  try {
    const io = new KaitaiStream(Buffer.from(job.hex, "hex"));
    const record = new Ehal[upper(job.type)](io);
    return { record: dump(record), consumed: io.pos };
  } catch (error) {
    return { error: String(error && error.stack ? error.stack.split("\n").slice(0, 3).join(" ") : error) };
  }
});
process.stdout.write(JSON.stringify(results));
